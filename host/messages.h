// Every text of the program, in both languages.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>

namespace exportifc::host {

enum class Language : std::uint8_t { english, portuguese };

/// One text; "{0}", "{1}" stand for values.
struct Text {
  const char* english;
  const char* portuguese;
};

void setLanguage(Language language);
Language language();

/// The text in the user's language.
const char* say(const Text& text);
std::string say(const Text& text, std::initializer_list<std::string_view> values);

/// A whole number with its thousands grouped, a number with decimals.
std::string numberText(std::int64_t value);
std::string decimalText(double value, int decimals);

namespace texts {

// ---- kinds of message
inline constexpr Text error{"error", "erro"};
inline constexpr Text warning{"warning", "aviso"};

// ---- writing
inline constexpr Text standardOutput{"standard output", "saída padrão"};
inline constexpr Text standardInput{"standard input", "entrada padrão"};
inline constexpr Text cannotWrite{"cannot write {0}: {1}", "não foi possível gravar {0}: {1}"};
inline constexpr Text errorNoSpace{"no space left on the disk", "não há espaço no disco"};
inline constexpr Text errorNotAllowed{"permission denied (read-only file or folder?)",
                                      "sem permissão (arquivo ou pasta só de leitura?)"};
inline constexpr Text errorNoFolder{"the file or its folder does not exist",
                                    "o arquivo ou a pasta não existe"};
inline constexpr Text errorNotAFolder{"part of the path is not a folder",
                                      "uma parte do caminho não é uma pasta"};
inline constexpr Text errorReadOnly{"the disk is read-only", "o disco é só de leitura"};
inline constexpr Text errorClosedPipe{"the reader closed the pipe",
                                      "quem lia a saída a fechou antes do fim"};
inline constexpr Text errorIsFolder{"it is a folder", "é uma pasta"};
inline constexpr Text errorTooBig{"the file would be larger than allowed",
                                  "o arquivo seria maior que o permitido"};
inline constexpr Text errorNameTooLong{"the name is too long", "o nome é longo demais"};
inline constexpr Text errorInterrupted{"interrupted", "interrompido"};

// ---- reading
inline constexpr Text cannotRead{"cannot read {0}: {1}", "não foi possível ler {0}: {1}"};
inline constexpr Text notAModel{
    "{0} is not a model file: it does not begin with \"{\" as a JSON model does, and its lines 4 "
    "and 5 are not a unit (m, cm, mm) and a bar count as in a batch text file",
    "{0} não é um arquivo de modelo: não começa com \"{\" como um modelo JSON, e suas linhas 4 e 5 "
    "não são uma unidade (m, cm, mm) e o número de barras como num arquivo de texto do modo batch"};
inline constexpr Text jsonUnexpected{"not valid JSON: unexpected {0}",
                                     "JSON inválido: {0} inesperado"};
inline constexpr Text jsonEndsEarly{"not valid JSON: the text ends too early",
                                    "JSON inválido: o texto termina antes do fim"};
inline constexpr Text numberTooLarge{"{0} is too large: numbers must lie within ±3.4e38",
                                     "{0} é grande demais: números devem estar entre ±3,4e38"};
inline constexpr Text unknownKey{"unknown key \"{0}\"; allowed: {1}",
                                 "chave desconhecida \"{0}\"; permitidas: {1}"};
inline constexpr Text keyTwice{"the key \"{0}\" stands twice",
                               "a chave \"{0}\" aparece duas vezes"};
inline constexpr Text keyMissing{"the key \"{0}\" is missing", "falta a chave \"{0}\""};
inline constexpr Text valueNotAllowed{"{0} is not allowed here; allowed: {1}",
                                      "{0} não é permitido aqui; permitido: {1}"};
inline constexpr Text objectNotAllowed{"an object {…} is not allowed here",
                                       "um objeto {…} não é permitido aqui"};
inline constexpr Text arrayNotAllowed{"an array […] is not allowed here",
                                      "uma lista […] não é permitida aqui"};
inline constexpr Text modelMustBeObject{"a model is an object {…}", "um modelo é um objeto {…}"};
inline constexpr Text threeCoordinates{"a node has three coordinates [x, y, z], this one {0}",
                                       "um nó tem três coordenadas [x, y, z], este tem {0}"};
inline constexpr Text twoNodes{"a bar has two nodes [first, second], this one {0}",
                               "uma barra tem dois nós [inicial, final], esta tem {0}"};
inline constexpr Text tenDims{"a section has at most ten dimensions",
                              "uma seção tem no máximo dez dimensões"};
inline constexpr Text allowedText{"a text", "um texto"};
inline constexpr Text allowedNumber{"a number", "um número"};
inline constexpr Text allowedArray{"an array […]", "uma lista […]"};
inline constexpr Text allowedNode{"[x, y, z]", "[x, y, z]"};
inline constexpr Text allowedBar{"a bar {\"nodes\": [0, 1], \"section\": \"…\"}",
                                 "uma barra {\"nodes\": [0, 1], \"section\": \"…\"}"};
inline constexpr Text allowedSection{"a section {\"text\": \"…\"}", "uma seção {\"text\": \"…\"}"};
inline constexpr Text allowedSections{"an object with a section for each name",
                                      "um objeto com uma seção para cada nome"};
inline constexpr Text allowedDims{"an array of up to ten numbers", "uma lista de até dez números"};
inline constexpr Text allowedSectionName{"the name of a section", "o nome de uma seção"};
inline constexpr Text allowedBarNodes{"[first node, second node]", "[nó inicial, nó final]"};
inline constexpr Text allowedNodeIndex{"the index of a node, a whole number from 0",
                                       "o índice de um nó, um número inteiro a partir de 0"};
inline constexpr Text allowedQuarterTurns{"a whole number of quarter turns",
                                          "um número inteiro de quartos de volta"};
inline constexpr Text allowedType{"0 to 11 or one of {0}", "de 0 a 11 ou um destes: {0}"};

// ---- problems of a model
inline constexpr Text bar{"bar {0}", "barra {0}"};
inline constexpr Text problemNodeIndex{"node {0} does not exist; the model has the nodes 0 to {1}",
                                       "o nó {0} não existe; o modelo tem os nós 0 a {1}"};
inline constexpr Text problemNoNodes{"node {0} does not exist; the model has no nodes",
                                     "o nó {0} não existe; o modelo não tem nós"};
inline constexpr Text problemSection{"section \"{0}\" is not defined",
                                     "a seção \"{0}\" não está definida"};
inline constexpr Text problemUnwritable{
    "section \"{0}\" has the character \"{1}\", which the file cannot hold: it would end there. "
    "Rename the section, or use --transliterate to write \"{2}\"",
    "a seção \"{0}\" tem o caractere \"{1}\", que o arquivo não comporta: ele terminaria ali. "
    "Renomeie a seção ou use --transliterate para gravar \"{2}\""};
inline constexpr Text didYouMean{"; did you mean {0}?", "; você quis dizer {0}?"};

inline constexpr Text barsFrom{"{0}, first: {1}", "{0}, primeira: {1}"};

// ---- export
inline constexpr Text nothingWritten{"{0}: nothing was written", "{0}: nada foi gravado"};
inline constexpr Text stoppedAtBar{"stopped at {0} of {1}: {2}", "parou na {0} de {1}: {2}"};
inline constexpr Text stoppedByUser{"interrupted by the user; nothing was written",
                                    "interrompido pelo usuário; nada foi gravado"};
inline constexpr Text outOfMemory{"not enough memory", "memória insuficiente"};
inline constexpr Text fileIncomplete{"the file has no end", "o arquivo ficou sem fim"};
inline constexpr Text sameFile{"{0} is the model itself: choose another output",
                               "{0} é o próprio modelo: escolha outra saída"};
inline constexpr Text sameOutput{"two models would be written to {0}",
                                 "dois modelos seriam gravados em {0}"};
inline constexpr Text moduleMessage{"\"{0}\": section \"{1}\", {2}, first: bar {3}",
                                    "\"{0}\": seção \"{1}\", {2}, primeira: barra {3}"};
inline constexpr Text oneBar{"1 bar", "1 barra"};
inline constexpr Text manyBars{"{0} bars", "{0} barras"};

// ---- summary
inline constexpr Text sumBars{"bars written", "barras gravadas"};
inline constexpr Text sumOf{"{0} of {1}", "{0} de {1}"};
inline constexpr Text sumSkipped{"left out", "deixadas fora"};
inline constexpr Text sumInvisible{"{0} invisible", "{0} invisíveis"};
inline constexpr Text sumType10{"{0} of type 10", "{0} do tipo 10"};
inline constexpr Text sumTooLong{"{0} with a section text too long",
                                 "{0} com texto de seção longo demais"};
inline constexpr Text sumElements{"elements", "elementos"};
inline constexpr Text sumUnknown{"unknown profiles", "perfis desconhecidos"};
inline constexpr Text sumUnknownRow{"\"{0}\": {1}, first: bar {2}",
                                    "\"{0}\": {1}, primeira: barra {2}"};
inline constexpr Text sumSize{"size", "tamanho"};
inline constexpr Text sumBytes{"{0} bytes, {1} lines", "{0} bytes, {1} linhas"};
inline constexpr Text sumTime{"time", "tempo"};
inline constexpr Text sumSeconds{"{0} s", "{0} s"};
inline constexpr Text none{"none", "nenhum"};
inline constexpr Text noneBars{"none", "nenhuma"};

// ---- progress
inline constexpr Text progressLine{"{0} %  {1} of {2} bars  {3}/s  {4} s left",
                                   "{0} %  {1} de {2} barras  {3}/s  faltam {4} s"};

}  // namespace texts

}  // namespace exportifc::host
