// Every text of the program, in both languages.
#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>

namespace exportifc::host {

enum class Language : std::uint8_t { english, portuguese };

/// A place in a text for a value: "{0}" stands for the first one, "{0:bar|bars}" for the word
/// that goes with it. No other brace is a place.
struct Placeholder {
  std::size_t value;
  bool isWord;
  std::string_view singular, plural;  ///< the two words
};

/// Takes a placeholder off the front of the text; false, and nothing taken, when it has none.
/// Throws when one is not closed, so that such a text does not compile.
constexpr bool takePlaceholder(std::string_view& text, Placeholder& place) {
  if (text.size() < 2 || text[0] != '{' || text[1] < '0' || text[1] > '9') {
    return false;
  }
  const std::size_t end = text.find('}');
  if (end == std::string_view::npos) {
    throw "a placeholder is not closed";  // NOLINT(hicpp-exception-baseclass): for the compiler
  }
  place = {static_cast<std::size_t>(text[1] - '0'), end > 2, {}, {}};
  if (place.isWord) {
    const std::size_t bar = text.find('|');
    if (text[2] != ':' || bar > end) {
      throw "a placeholder is {0} or {0:singular|plural}";  // NOLINT: as above
    }
    place.singular = text.substr(3, bar - 3);
    place.plural = text.substr(bar + 1, end - bar - 1);
  }
  text.remove_prefix(end + 1);
  return true;
}

/// Number of values that a text takes. Throws when it leaves one out.
constexpr std::size_t valueCount(std::string_view text) {
  unsigned used = 0;  // one bit for each value
  Placeholder place{};
  while (!text.empty()) {
    if (takePlaceholder(text, place)) {
      used |= 1U << place.value;
    } else {
      text.remove_prefix(1);
    }
  }
  std::size_t count = 0;
  for (; (used & 1U) != 0; used >>= 1) {
    ++count;
  }
  if (used != 0) {
    throw "a text leaves out a value before its last one";  // NOLINT: as above
  }
  return count;
}

/// One text in each language; those that do not take the same values do not compile.
struct Text {
  consteval Text(const char* inEnglish, const char* inPortuguese)
      : english(inEnglish), portuguese(inPortuguese), values(valueCount(inEnglish)) {
    if (valueCount(inPortuguese) != values) {
      throw "the languages of a text take different values";  // NOLINT: as above
    }
  }

  const char* english;
  const char* portuguese;
  std::size_t values;
};

/// A text that takes so many values; any other does not compile.
template <std::size_t Count>
struct TextWith {
  // NOLINTNEXTLINE(google-explicit-constructor,hicpp-explicit-conversions): texts are passed as
  // such
  consteval TextWith(const Text& given) : text(given) {
    if (given.values != Count) {
      throw "this text takes another number of values";  // NOLINT: as above
    }
  }

  const Text& text;
};

void setLanguage(Language language);
Language language();

/// The text in the user's language.
const char* say(const Text& text);

/// The same with its values in place. A word stands in the singular beside the value "1". Throws
/// std::logic_error when the number of values is not the text's.
std::string fill(const Text& text, std::span<const std::string_view> values);
inline std::string fill(const Text& text, std::initializer_list<std::string_view> values) {
  return fill(text, std::span(values.begin(), values.size()));
}

/// `fill` for a text known when this is compiled, with the number of values checked there:
/// `say(texts::cannotRead, {name, reason})`.
template <std::size_t Count>
std::string say(std::type_identity_t<TextWith<Count>> text,
                const std::string_view (&values)[Count]) {
  return fill(text.text, values);
}

/// What the module says in its own, fixed words, in quotes; for people who do not read them with
/// their meaning behind: "Perfil Desconhecido" (unknown profile).
std::string moduleText(const std::string& original);

/// A whole number with its thousands grouped, a number with decimals.
std::string numberText(std::int64_t value);
std::string decimalText(double value, int decimals);

/// "1 bar", "2 bars".
std::string barsText(std::int64_t count);

namespace texts {

// ---- kinds of message
inline constexpr Text error{"error", "erro"};
inline constexpr Text warning{"warning", "aviso"};
inline constexpr Text note{"note", "nota"};

// ---- writing
inline constexpr Text standardOutput{"standard output", "saída padrão"};
inline constexpr Text standardError{"standard error", "saída de erros"};
inline constexpr Text standardInput{"standard input", "entrada padrão"};
inline constexpr Text cannotWrite{"cannot write {0}: {1}", "não foi possível gravar {0}: {1}"};
inline constexpr Text errorNoSpace{"no space left on the disk", "não há espaço no disco"};
inline constexpr Text errorNotAllowed{"permission denied (read-only, or open in another program?)",
                                      "sem permissão (só de leitura ou aberto em outro programa?)"};
inline constexpr Text errorNoFolder{"the file or its folder does not exist",
                                    "o arquivo ou a pasta não existe"};
inline constexpr Text errorThisFolder{"the folder {0} does not exist", "a pasta {0} não existe"};
inline constexpr Text errorNoFile{"the file does not exist", "o arquivo não existe"};
inline constexpr Text errorMayNotRead{"no permission to read it", "sem permissão de leitura"};
inline constexpr Text cannotMakeFolder{"cannot make the folder {0}: {1}",
                                       "não foi possível criar a pasta {0}: {1}"};
inline constexpr Text errorNotAFolder{"part of the path is not a folder",
                                      "uma parte do caminho não é uma pasta"};
inline constexpr Text errorReadOnly{"the disk is read-only", "o disco é só de leitura"};
inline constexpr Text errorClosedPipe{"the reader closed the pipe",
                                      "quem lia a saída a fechou antes do fim"};
inline constexpr Text errorIsFolder{"it is a folder", "é uma pasta"};
inline constexpr Text errorTooBig{"the file would be larger than allowed",
                                  "o arquivo seria maior que o permitido"};
inline constexpr Text errorNameTooLong{"the name is too long", "o nome é longo demais"};
inline constexpr Text errorBadName{"the system allows no file of this name",
                                   "o sistema não permite um arquivo com este nome"};
inline constexpr Text errorInterrupted{"interrupted", "interrompido"};

// ---- the files of one call
inline constexpr Text sameFile{"{0} ({1}) and {2} ({3}) are the same file: choose another output",
                               "{0} ({1}) e {2} ({3}) são o mesmo arquivo: escolha outra saída"};
inline constexpr Text notOurs{
    "{0} ({1}) is there already and was not written by this program; to replace it, {2}",
    "{0} ({1}) já existe e não foi gravado por este programa; para substituí-lo, {2}"};
inline constexpr Text replaceByOutput{"name it with -o", "indique-o com -o"};
inline constexpr Text replaceByView{"name it with the -o of exportifc view",
                                    "indique-o com -o em exportifc view"};
inline constexpr Text replaceByHand{"remove it first", "remova-o antes"};
inline constexpr Text fileInput{"input", "entrada"};
inline constexpr Text fileOutput{"output", "saída"};
inline constexpr Text fileTemplate{"the viewer's page", "a página do visualizador"};
inline constexpr Text fileOfProgram{"part of the program", "parte do programa"};
inline constexpr Text fileIfcOf{"the IFC file of {0}", "o arquivo IFC de {0}"};
inline constexpr Text filePageOf{"the page of {0}", "a página de {0}"};
inline constexpr Text fileDrawing{"drawing", "desenho"};

// ---- reading
inline constexpr Text cannotRead{"cannot read {0}: {1}", "não foi possível ler {0}: {1}"};
inline constexpr Text notAModel{
    "not a model file: it does not begin with \"{\" as a JSON model does, and its lines 4 "
    "and 5 are not a unit (m, cm, mm) and a bar count as in a batch text file",
    "não é um arquivo de modelo: não começa com \"{\" como um modelo JSON, e suas linhas 4 e 5 "
    "não são uma unidade (m, cm, mm) e o número de barras como num arquivo de texto do modo batch"};
inline constexpr Text emptyFile{"the file is empty", "o arquivo está vazio"};
inline constexpr Text utf16File{"the text is in UTF-16; save it as UTF-8",
                                "o texto está em UTF-16; salve-o como UTF-8"};
inline constexpr Text exchangeFile{"an IFC file, not a model; exportifc view shows it",
                                   "um arquivo IFC, não um modelo; exportifc view o mostra"};
inline constexpr Text jsonUnexpected{"not valid JSON: unexpected {0}",
                                     "JSON inválido: {0} inesperado"};
inline constexpr Text jsonEndsEarly{"not valid JSON: the text ends too early",
                                    "JSON inválido: o texto termina antes do fim"};
inline constexpr Text jsonNotUtf8{"the byte {0} is not UTF-8; save the file as UTF-8",
                                  "o byte {0} não é UTF-8; salve o arquivo como UTF-8"};
inline constexpr Text jsonNoStart{"a JSON model begins with {", "um modelo JSON começa com {"};
inline constexpr Text jsonTrailingComma{"the comma before \"{0}\" is one too many",
                                        "a vírgula antes de \"{0}\" está sobrando"};
inline constexpr Text jsonExtraComma{"this comma is one too many, or a value is missing before it",
                                     "esta vírgula está sobrando, ou falta um valor antes dela"};
inline constexpr Text jsonMissingComma{"a comma is missing here", "falta uma vírgula aqui"};
inline constexpr Text jsonMissingColon{"a colon is missing between key and value",
                                       "faltam dois-pontos entre a chave e o valor"};
inline constexpr Text jsonValueMissing{"a value is missing here", "falta um valor aqui"};
inline constexpr Text jsonKeyExpected{"a key in double quotes should stand here",
                                      "uma chave entre aspas duplas devia estar aqui"};
inline constexpr Text jsonDecimalComma{
    "a decimal comma? Decimals stand behind a point: 1.5",
    "uma vírgula decimal? As decimais vêm depois de um ponto: 1.5"};
inline constexpr Text decimalComma{
    "; a decimal comma? Decimals stand behind a point: 1.5",
    "; uma vírgula decimal? As decimais vêm depois de um ponto: 1.5"};
inline constexpr Text jsonMissingBracket{
    "\"{0}\" is missing before this: the \"{1}\" of {2} is still open",
    "falta \"{0}\" antes disto: o \"{1}\" de {2} ainda está aberto"};
inline constexpr Text jsonEndsOpen{
    "the text ends too early: \"{0}\" is missing, the \"{1}\" of {2} is still open",
    "o texto termina cedo demais: falta \"{0}\", o \"{1}\" de {2} ainda está aberto"};
inline constexpr Text jsonBracketTooMany{"this bracket is one too many: the model has ended",
                                         "este fecho está sobrando: o modelo já terminou"};
inline constexpr Text jsonSecondModel{"a second model begins here; a file holds one",
                                      "um segundo modelo começa aqui; um arquivo contém um só"};
inline constexpr Text jsonTextBehind{"text behind the end of the model; remove it",
                                     "texto depois do fim do modelo; remova-o"};
inline constexpr Text jsonComment{"{0} begins a comment; JSON has none, remove it",
                                  "{0} começa um comentário; JSON não os tem, remova-o"};
inline constexpr Text jsonNotFinite{
    "{0} is no number that JSON has; write a finite one, as 1.5",
    "{0} não é um número que JSON tenha; escreva um finito, como 1.5"};
inline constexpr Text jsonNoNumber{
    "{0} is not a number; allowed: digits with a point and an exponent, as -1.5 or 2e3",
    "{0} não é um número; permitido: algarismos com ponto e expoente, como -1.5 ou 2e3"};
inline constexpr Text jsonWrittenSo{"{0} is not JSON; write {1}", "{0} não é JSON; escreva {1}"};
inline constexpr Text jsonDoubleQuotes{"texts stand in double quotes: \"{0}\"",
                                       "textos ficam entre aspas duplas: \"{0}\""};
inline constexpr Text jsonTypographicQuote{"{0} is a typographic quote; write a plain \"",
                                           "{0} é uma aspa tipográfica; escreva uma simples: \""};
inline constexpr Text jsonKeyQuotes{"keys stand in double quotes: \"{0}\"",
                                    "chaves ficam entre aspas duplas: \"{0}\""};
inline constexpr Text jsonTextQuotes{"{0}: a text stands in double quotes",
                                     "{0}: um texto fica entre aspas duplas"};
inline constexpr Text jsonOpenText{
    "the text that begins here is not closed by \" on its line; a quote inside of it is \\\"",
    "o texto que começa aqui não é fechado por \" em sua linha; uma aspa dentro dele é \\\""};
inline constexpr Text jsonBackslash{"a backslash alone in a text; write \\\\",
                                    "uma barra invertida sozinha num texto; escreva \\\\"};
inline constexpr Text jsonControl{"the control character {0} in a text; remove it or write {1}",
                                  "o caractere de controle {0} num texto; remova-o ou escreva {1}"};
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

// ---- reading batch text files
inline constexpr Text allowedCount{"a whole number from 0", "um número inteiro a partir de 0"};
inline constexpr Text allowedSectionText{"family word and dimensions, as W 200 100 8 6",
                                         "palavra de família e dimensões, como W 200 100 8 6"};
inline constexpr Text batchMark{"the file begins with the mark of UTF-8 (BOM), which is not read",
                                "o arquivo começa com a marca de UTF-8 (BOM), que não é lida"};
inline constexpr Text batchHeaderCount{
    "\"{0}\" stands where a count should; it is not read, but perhaps a line is missing or too "
    "many",
    "\"{0}\" está no lugar de uma contagem; não é lido, mas talvez falte ou sobre uma linha"};
inline constexpr Text batchBarCount{"\"{0}\" is not a number of bars; it is read as {1}",
                                    "\"{0}\" não é um número de barras; é lido como {1}"};
inline constexpr Text batchUnitBlank{
    "a blank makes the unit \"{0}\" unknown; coordinates are taken as millimetres; write {1} alone",
    "um espaço torna desconhecida a unidade \"{0}\"; as coordenadas são tomadas como milímetros; "
    "escreva só {1}"};
inline constexpr Text batchUnitLine{
    "the unit stands in line {0} instead of 4: a batch text file begins with the number of nodes, "
    "the number of sections, a title, the unit and the number of bars, one a line",
    "a unidade está na linha {0} em vez da 4: um arquivo de texto do modo batch começa com o "
    "número "
    "de nós, o número de seções, um título, a unidade e o número de barras, um por linha"};
inline constexpr Text batchNumber{"\"{0}\" is not a number; it is read as {1}",
                                  "\"{0}\" não é um número; é lido como {1}"};
inline constexpr Text batchEmptyNumber{"a number should stand in this line; it is read as {0}",
                                       "um número devia estar nesta linha; é lido como {0}"};
inline constexpr Text batchMoreNumbers{"{0} more {0:value is|values are} no number",
                                       "mais {0} {0:valor não é número|valores não são números}"};
inline constexpr Text problemEmptySection{
    "the section text is empty; its bars become squares of 4 mm",
    "o texto da seção está vazio; suas barras viram quadrados de 4 mm"};
inline constexpr Text batchLinesMissing{
    "the twelve lines of the bars no longer fit: the section text \"{0}\" is line {1} of its bar, "
    "not "
    "9; above it {2} {2:line is|lines are} missing",
    "as doze linhas das barras deixam de encaixar: o texto de seção \"{0}\" é a linha {1} de sua "
    "barra, não a 9; acima dele {2:falta|faltam} {2} {2:linha|linhas}"};
inline constexpr Text batchLinesTooMany{
    "the twelve lines of the bars no longer fit: the section text \"{0}\" is line {1} of its bar, "
    "not "
    "9; above it {2} {2:line is|lines are} too many",
    "as doze linhas das barras deixam de encaixar: o texto de seção \"{0}\" é a linha {1} de sua "
    "barra, não a 9; acima dele {2:sobra|sobram} {2} {2:linha|linhas}"};
inline constexpr Text batchBarCut{
    "the file ends in the middle of the bar, behind {0} of its 12 lines",
    "o arquivo termina no meio da barra, depois de {0} de suas 12 linhas"};
inline constexpr Text batchMoreBars{
    "the file announces {0} {0:bar|bars}, but holds {1}; the others are left out",
    "o arquivo anuncia {0} {0:barra|barras}, mas contém {1}; as outras ficam fora"};

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
inline constexpr Text problemFamily{
    "family word \"{0}\" is not known; its bars become squares of 4 mm",
    "a palavra de família \"{0}\" não é conhecida; suas barras viram quadrados de 4 mm"};
inline constexpr Text problemNoProfile{
    "family \"{0}\" has no profile; both halves of its bars become squares of 4 mm",
    "a família \"{0}\" não tem perfil; as duas metades de suas barras viram quadrados de 4 mm"};
inline constexpr Text problemTooLong{
    "section text \"{0}\" has {1} bytes, at most {2} are possible; its bars are left out",
    "o texto de seção \"{0}\" tem {1} bytes, no máximo {2} são possíveis; suas barras ficam fora"};
inline constexpr Text problemQuote{
    "section \"{0}\" has an apostrophe or a backslash, which other programs cannot read",
    "a seção \"{0}\" tem um apóstrofo ou uma barra invertida, que outros programas não leem"};
inline constexpr Text problemComment{
    "section \"{0}\" has \"*/\", which ends the comment that names it",
    "a seção \"{0}\" tem \"*/\", que encerra o comentário com seu nome"};
inline constexpr Text problemControl{"the section text has a control character (tab, line end)",
                                     "o texto da seção tem um caractere de controle (tabulação, "
                                     "fim de linha)"};
inline constexpr Text problemMissing{"section \"{0}\": dimension {1} ({2}) is missing",
                                     "seção \"{0}\": falta a dimensão {1} ({2})"};
inline constexpr Text problemNotANumber{
    "section \"{0}\": \"{2}\" for {1} is no number and is read as 0",
    "seção \"{0}\": \"{2}\" em {1} não é um número e é lido como 0"};
inline constexpr Text problemNumberCut{"section \"{0}\": \"{2}\" for {1} is read as {3}",
                                       "seção \"{0}\": \"{2}\" em {1} é lido como {3}"};
inline constexpr Text problemGlued{
    "section \"{0}\": in \"{1}\" the piece behind the last x, \"{2}\", is not read",
    "seção \"{0}\": em \"{1}\" o que vem depois do último x, \"{2}\", não é lido"};
inline constexpr Text problemGluedCut{"section \"{0}\": in \"{1}\", \"{2}\" is read as {3}",
                                      "seção \"{0}\": em \"{1}\", \"{2}\" é lido como {3}"};
inline constexpr Text problemGrouped{
    "section \"{0}\": \"{2}\" for {1} is read as {3}; if {4} is meant, write it without the "
    "separator",
    "seção \"{0}\": \"{2}\" em {1} é lido como {3}; se o valor é {4}, escreva-o sem o separador"};
inline constexpr Text adviceBlanks{"; write blanks between the dimensions",
                                   "; separe as dimensões com espaços"};
inline constexpr Text adviceWriteBlanks{"; write blanks: \"{0}\"", "; separe com espaços: \"{0}\""};
inline constexpr Text adviceMillimetres{"; write the number alone, in millimetres",
                                        "; escreva só o número, em milímetros"};
inline constexpr Text adviceNoThousands{
    "; a number has one decimal sign and no separator of thousands, and blanks stand between two "
    "dimensions",
    "; um número tem um só sinal decimal, sem separador de milhares, e há espaço entre duas "
    "dimensões"};
inline constexpr Text adviceLeadingBlank{"; it begins with a blank, so the word is empty",
                                         "; começa com um espaço, e assim a palavra fica vazia"};
inline constexpr Text adviceOtherBlank{"; a tab or a no-break space is no blank",
                                       "; tabulação e espaço inseparável não valem como espaço"};
inline constexpr Text adviceOrder{"; {0} reads {1}", "; {0} lê {1}"};
inline constexpr Text adviceSecondSide{"; {0}", "; {0}"};
inline constexpr Text adviceCase{"; it must be in capitals", "; deve estar em maiúsculas"};
inline constexpr Text adviceBlankMissing{"; a blank is missing behind \"{0}\"",
                                         "; falta um espaço depois de \"{0}\""};
inline constexpr Text adviceWrite{"; write \"{0}\"", "; escreva \"{0}\""};
inline constexpr Text adviceStillMissing{", and also {0}", ", e ainda {0}"};
inline constexpr Text adviceShape{"; families of this shape: {0}", "; famílias desta forma: {0}"};
inline constexpr Text problemNegative{
    "section \"{0}\": dimension {1} ({2}) is {3}, it must be positive",
    "seção \"{0}\": a dimensão {1} ({2}) é {3}, mas deve ser positiva"};
inline constexpr Text noteTouches{
    "section \"{0}\": its outline touches itself; some programs fill the cell between its webs and "
    "show a volume several times too large",
    "seção \"{0}\": seu contorno toca a si mesmo; alguns programas preenchem a célula entre as "
    "almas e mostram um volume várias vezes maior"};
inline constexpr Text problemNotFinite{"dimension {0} ({1}) is not a finite number",
                                       "a dimensão {0} ({1}) não é um número finito"};
inline constexpr Text problemBarNotFinite{"a coordinate or the angle is not a finite number",
                                          "uma coordenada ou o ângulo não é um número finito"};
inline constexpr Text problemZero{"the bar has no length (less than 0.01 mm)",
                                  "a barra não tem comprimento (menos de 0,01 mm)"};
inline constexpr Text problemUnit{
    "the unit \"{0}\" is not m, cm or mm; coordinates are taken as millimetres",
    "a unidade \"{0}\" não é m, cm nem mm; as coordenadas são tomadas como milímetros"};
inline constexpr Text problemMissingBars{"the file announces {0} {0:bar|bars}, but holds {1}",
                                         "o arquivo anuncia {0} {0:barra|barras}, mas contém {1}"};
inline constexpr Text problemNoBars{"the model has no bars", "o modelo não tem barras"};
inline constexpr Text problemAllLeftOut{"all bars are left out: {0}",
                                        "todas as barras ficam fora: {0}"};
inline constexpr Text sectionsAllowed{"; allowed: {0}", "; permitidas: {0}"};
inline constexpr Text didYouMean{"; did you mean {0}?", "; você quis dizer {0}?"};

inline constexpr Text barsFrom{"{0}, first: {1}", "{0}, primeira: {1}"};

// ---- what is only unusual
inline constexpr Text noteSmallDimension{"section \"{0}\": {1} is only {2} mm",
                                         "seção \"{0}\": {1} tem só {2} mm"};
inline constexpr Text noteLargeDimension{
    "section \"{0}\": {1} is {2} mm, more than 3 m; dimensions are millimetres",
    "seção \"{0}\": {1} tem {2} mm, mais de 3 m; as dimensões são em milímetros"};
inline constexpr Text noteThick{
    "section \"{0}\": {1} is {2} mm, more than half of {3}, {4} mm; perhaps in the wrong order?",
    "seção \"{0}\": {1} tem {2} mm, mais da metade de {3}, {4} mm; talvez fora de ordem?"};
inline constexpr Text noteTextDims{
    "section \"{0}\": the text says {1}, but \"dims\" says {3} for {2}; the bars get the latter",
    "seção \"{0}\": o texto diz {1}, mas \"dims\" diz {3} em {2}; as barras ficam com este valor"};
inline constexpr Text noteShortBar{
    "the bar is {0} mm long, shorter than its section \"{1}\" is deep ({2} mm)",
    "a barra tem {0} mm, menos que a altura da sua seção \"{1}\" ({2} mm)"};
inline constexpr Text noteAngle{
    "the angle is {0}, more than a whole turn; angles are radians, are these degrees?",
    "o ângulo é {0}, mais que uma volta inteira; ângulos são em radianos, estes são graus?"};
inline constexpr Text noteSamePlace{"the bar lies where bar {0} lies: the same two ends",
                                    "a barra está no lugar da barra {0}: as mesmas extremidades"};
inline constexpr Text noteSmallModel{"the whole model measures {0} m; is the unit right ({1})?",
                                     "o modelo inteiro mede {0} m; a unidade está certa ({1})?"};
inline constexpr Text noteLargeModel{"the whole model measures {0} km; is the unit right ({1})?",
                                     "o modelo inteiro mede {0} km; a unidade está certa ({1})?"};
inline constexpr Text noteFarAway{
    "coordinates lie {0} km from the origin, where they can only be kept in steps of {1} mm; move "
    "the model near the origin",
    "há coordenadas a {0} km da origem, onde só podem ser guardadas em passos de {1} mm; leve o "
    "modelo para perto da origem"};
inline constexpr Text noteUnusedSections{
    "{0} {0:section|sections} used by no bar: {1}",
    "{0} {0:seção|seções} sem nenhuma barra que {0:a|as} use: {1}"};
inline constexpr Text noteUnusedNodes{
    "{0} {0:node|nodes} used by no bar, the first is node {1}",
    "{0} {0:nó|nós} sem nenhuma barra que {0:o|os} use, o primeiro é o nó {1}"};

// ---- export
inline constexpr Text nothingWritten{"{0}: nothing was written", "{0}: nada foi gravado"};
inline constexpr Text stoppedAtBar{"stopped at {0} of {1}: {2}", "parou na {0} de {1}: {2}"};
inline constexpr Text stoppedByUser{"interrupted by the user; nothing was written",
                                    "interrompido pelo usuário; nada foi gravado"};
inline constexpr Text outOfMemory{"not enough memory", "memória insuficiente"};
inline constexpr Text fileIncomplete{"the file has no end", "o arquivo ficou sem fim"};
inline constexpr Text exportProblemsMore{
    "{0} {0:problem|problems}; exportifc check shows all",
    "{0} {0:problema|problemas}; exportifc check mostra todos"};
inline constexpr Text moduleMessage{"{0}: section \"{1}\"", "{0}: seção \"{1}\""};
inline constexpr Text manyBars{"{0} {0:bar|bars}", "{0} {0:barra|barras}"};

inline constexpr Text workerFailed{"{0}: cannot start a second process: {1}",
                                   "{0}: não foi possível iniciar outro processo: {1}"};
inline constexpr Text jobsProgress{"{0} of {1} {1:model|models}", "{0} de {1} {1:modelo|modelos}"};

// ---- check
inline constexpr Text checkSummary{"{0} {0:bar|bars}, {1}", "{0} {0:barra|barras}, {1}"};
inline constexpr Text checkNoProblems{"no problems", "nenhum problema"};
inline constexpr Text checkNotes{"{0}, {1} {1:note|notes}", "{0}, {1} {1:nota|notas}"};
inline constexpr Text checkProblems{"{0} {0:problem|problems}", "{0} {0:problema|problemas}"};

// ---- convert
inline constexpr Text lossType{
    "the batch text file has no types: {0} {0:bar loses its|bars lose theirs}, the first is bar "
    "{1}; "
    "all their elements go directly to the storey",
    "o arquivo de texto não tem tipos: {0} {0:barra perde|barras perdem} o seu, a primeira é a "
    "barra "
    "{1}; seus elementos vão direto para o pavimento"};
inline constexpr Text lossType10{
    "{0} {0:bar of type 10 (not-exported) is|bars of type 10 (not-exported) are} left out, the "
    "first "
    "is bar {1}",
    "{0} {0:barra do tipo 10 (not-exported) fica|barras do tipo 10 (not-exported) ficam} fora, a "
    "primeira é a barra {1}"};
inline constexpr Text lossVisible{
    "the batch text file has no visibility: {0} invisible {0:bar becomes|bars become} visible, the "
    "first is bar {1}",
    "o arquivo de texto não tem visibilidade: {0} {0:barra invisível fica visível|barras "
    "invisíveis "
    "ficam visíveis}, a primeira é a barra {1}"};
inline constexpr Text lossQuarterTurns{
    "quarter turns are added to the angle in {0} {0:bar|bars}, the first is bar {1}",
    "os quartos de volta são somados ao ângulo em {0} {0:barra|barras}, a primeira é a barra {1}"};
inline constexpr Text lossDims{
    "section \"{0}\": the batch text file has no dimensions of their own; they will be read from "
    "\"{1}\" and differ",
    "seção \"{0}\": o arquivo de texto não tem dimensões separadas; elas serão lidas de \"{1}\" e "
    "são diferentes"};
inline constexpr Text lossNames{
    "the {0:name|names} of {0} {0:section is|sections are} lost: a batch text file knows only "
    "{0:its text|their texts}",
    "{0:o nome|os nomes} de {0} {0:seção se perde|seções se perdem}: o arquivo de texto só conhece "
    "{0:seu texto|seus textos}"};
inline constexpr Text convertLineBreak{
    "section \"{0}\": its text does not fit one line of a batch text file",
    "seção \"{0}\": seu texto não cabe numa linha do arquivo de texto"};
inline constexpr Text convertTitleBreak{"the title does not fit one line of a batch text file",
                                        "o título não cabe numa linha do arquivo de texto"};
inline constexpr Text convertSameFormat{
    "{0}: {1} is {2} already, and becomes {3}: choose a name that ends in {4}",
    "{0}: {1} já é {2}, e se torna {3}: escolha um nome que termine em {4}"};

// ---- kinds of file
inline constexpr Text formatExchange{"an IFC file", "um arquivo IFC"};
inline constexpr Text formatPage{"a page", "uma página"};
inline constexpr Text formatJson{"a JSON model", "um modelo JSON"};
inline constexpr Text formatBatch{"a batch text file", "um arquivo de texto do modo batch"};
inline constexpr Text useExtension{
    "{0}: {1} would be written, but {2} is the extension of {3}: choose a name that ends in {4}, "
    "or write exportifc {5} for {3}",
    "{0}: o conteúdo seria {1}, mas {2} é a extensão de {3}: escolha um nome que termine em {4}, "
    "ou "
    "escreva exportifc {5} para {3}"};

// ---- view
inline constexpr Text noTemplate{
    "the viewer's page is missing: {0}; ./build.sh in the folder of the sources makes it, and "
    "--template or EXPORTIFC_VIEWER names one that lies elsewhere",
    "falta a página do visualizador: {0}; ./build.sh na pasta dos fontes a cria, e --template ou "
    "EXPORTIFC_VIEWER indica uma que está em outro lugar"};
inline constexpr Text badTemplate{"{0} is not the viewer's page",
                                  "{0} não é a página do visualizador"};

// ---- profiles
inline constexpr Text explainNotRead{"not read by this family", "esta família não a lê"};
inline constexpr Text profilesTwoHalves{" (two halves)", " (duas metades)"};
inline constexpr Text profilesNoProfile{"no profile: both halves become squares of 4 mm",
                                        "sem perfil: as duas metades viram quadrados de 4 mm"};
inline constexpr Text secondSide{"the width is d3, or d2, or d1: the first of at least 0.001",
                                 "a largura é d3, ou d2, ou d1: a primeira de ao menos 0,001"};
inline constexpr Text profilesFamily{"family word", "família"};
inline constexpr Text profilesPage{
    "# Section families\n\nMade by `exportifc profiles --markdown` from the tables that the export "
    "itself uses; do not edit.\n\nA section text is a family word, a blank and the dimensions d0, "
    "d1, d2, ... in millimetres, for instance `W 200 100 8 6`. Dimensions are found by their "
    "place: "
    "one that a family does not read (an empty cell) must still be there when another follows. "
    "Case "
    "matters. The drawings show the section as the bar's own x and y axes see it; the bar runs "
    "through the crossing of the axes, away from the viewer's paper.\n",
    "# Famílias de seções\n\nFeito por `exportifc profiles --markdown` a partir das tabelas da "
    "própria exportação; não edite.\n\nUm texto de seção é a palavra da família, um espaço e as "
    "dimensões d0, d1, d2, ... em milímetros, por exemplo `W 200 100 8 6`. As dimensões valem pelo "
    "lugar: a que a família não lê (célula vazia) deve existir se outra vem depois. Maiúsculas e "
    "minúsculas são diferentes. Os desenhos mostram a seção nos eixos x e y da barra, que passa "
    "pelo cruzamento dos eixos.\n"};
inline constexpr Text profilesFootnote{
    "\n¹ The width is d3, or d2, or d1: the first of at least 0.001.\n\nA family of two halves is "
    "written as two profiles and two elements for each bar, named with `_1` and `_2` behind the "
    "family word. Any other word is an unknown profile: the bar becomes a square of 4 mm.\n\n## "
    "Drawings",
    "\n¹ A largura é d3, ou d2, ou d1: a primeira de ao menos 0,001.\n\nUma família de duas "
    "metades "
    "é gravada como dois perfis e dois elementos por barra, com `_1` e `_2` depois da palavra. "
    "Qualquer outra palavra é um perfil desconhecido: a barra vira um quadrado de 4 mm.\n\n## "
    "Desenhos"};
inline constexpr Text meaningDepth{"depth", "altura"};
inline constexpr Text meaningWidth{"width", "largura"};
inline constexpr Text meaningLeg{"leg", "aba"};
inline constexpr Text meaningDiameter{"diameter", "diâmetro"};
inline constexpr Text meaningThickness{"thickness", "espessura"};
inline constexpr Text meaningWebThickness{"web thickness", "espessura da alma"};
inline constexpr Text meaningFlangeThickness{"flange thickness", "espessura da mesa"};
inline constexpr Text meaningTopFlangeThickness{"top flange thickness",
                                                "espessura da mesa superior"};
inline constexpr Text meaningBottomFlangeThickness{"bottom flange thickness",
                                                   "espessura da mesa inferior"};
inline constexpr Text meaningFlangeWidth{"flange width", "largura da mesa"};
inline constexpr Text meaningTopFlangeWidth{"top flange width", "largura da mesa superior"};
inline constexpr Text meaningBottomFlangeWidth{"bottom flange width", "largura da mesa inferior"};
inline constexpr Text meaningLip{"lip", "enrijecedor"};
inline constexpr Text meaningTopLip{"top lip", "enrijecedor superior"};
inline constexpr Text meaningBottomLip{"bottom lip", "enrijecedor inferior"};
inline constexpr Text meaningBrim{"brim width", "largura da aba"};
inline constexpr Text meaningOverWebs{"distance over the webs", "distância externa das almas"};
inline constexpr Text meaningHatHeight{"height of one hat", "altura de uma cartola"};
inline constexpr Text meaningGap{"gap between the halves", "afastamento das metades"};
inline constexpr Text meaningOverBoth{"width over both halves", "largura das duas metades"};
inline constexpr Text meaningOverCorners{"width over the corners", "largura entre os vértices"};
inline constexpr Text meaningBetweenCentres{"distance of the halves' centres",
                                            "distância dos centros das metades"};

// ---- arguments
inline constexpr Text helpProgram{
    "Turns structural models into IFC2X3 files, without the host application.",
    "Transforma modelos de estruturas em arquivos IFC2X3, sem o programa hospedeiro."};
inline constexpr Text helpExport{"Write models as IFC files", "Grava modelos como arquivos IFC"};
inline constexpr Text helpCheck{"Say what would go wrong, without writing",
                                "Diz o que daria errado, sem gravar"};
inline constexpr Text helpProfiles{"Show the section families and their dimensions",
                                   "Mostra as famílias de seções e suas dimensões"};
inline constexpr Text helpConvert{
    "Turn a JSON model into a batch text file, or back",
    "Converte um modelo JSON em arquivo de texto batch, ou o inverso"};
inline constexpr Text helpView{"Write a page that shows the structure in a browser",
                               "Grava uma página que mostra a estrutura no navegador"};
inline constexpr Text helpModels{"JSON models or batch text files; - is standard input",
                                 "modelos JSON ou arquivos de texto batch; - é a entrada padrão"};
inline constexpr Text helpModel{"a JSON model or a batch text file; - is standard input",
                                "um modelo JSON ou arquivo de texto batch; - é a entrada padrão"};
inline constexpr Text helpOutput{
    "the IFC file; - is standard output (default: beside the model, .ifc)",
    "o arquivo IFC; - é a saída padrão (sem ela: junto ao modelo, .ifc)"};
inline constexpr Text helpOutDir{"folder for the IFC files", "pasta dos arquivos IFC"};
inline constexpr Text helpVisibleOnly{"leave invisible bars out",
                                      "deixa fora as barras invisíveis"};
inline constexpr Text helpStrict{"write nothing when the model has any problem that check finds",
                                 "não grava nada se o modelo tem algum problema que check aponta"};
inline constexpr Text helpTransliterate{
    "write accented letters of section texts as plain ones (ç as c)",
    "grava letras acentuadas dos textos de seção sem acento (ç como c)"};
inline constexpr Text helpQuiet{"no summary, warnings or progress",
                                "sem resumo, avisos e andamento"};
inline constexpr Text helpJobs{"convert so many models side by side",
                               "converte tantos modelos ao mesmo tempo"};
inline constexpr Text helpHtml{"also write a page that shows it, beside the IFC file",
                               "grava também uma página que o mostra, junto ao arquivo IFC"};
inline constexpr Text helpTemplate{"the viewer's page, if not beside the program",
                                   "a página do visualizador, se não está junto ao programa"};
inline constexpr Text helpJson{"for programs: one JSON array, one object for each model",
                               "para programas: uma lista JSON, um objeto por modelo"};
inline constexpr Text helpNoNotes{"do not say what is only unusual",
                                  "não diz o que é apenas incomum"};
inline constexpr Text helpFamily{
    "a family word, or a section text to explain (default: all families)",
    "uma palavra de família, ou um texto de seção a explicar (sem ela: todas as famílias)"};
inline constexpr Text helpSvg{"write a drawing of each family into this folder",
                              "grava um desenho de cada família nesta pasta"};
inline constexpr Text helpMarkdown{"the page docs/profiles.md", "a página docs/profiles.md"};
inline constexpr Text helpConvertOutput{"the other file; - is standard output",
                                        "o outro arquivo; - é a saída padrão"};
inline constexpr Text helpConvertStrict{"write nothing when something would be lost",
                                        "não grava nada se algo se perderia"};
inline constexpr Text helpViewInput{"a model or an IFC file", "um modelo ou um arquivo IFC"};
inline constexpr Text helpViewOutput{"the page (default: beside the input, .html)",
                                     "a página (sem ela: junto à entrada, .html)"};
inline constexpr Text helpHelp{"this help", "esta ajuda"};
inline constexpr Text helpVersion{"the version", "a versão"};
inline constexpr Text helpExitCodes{
    "Exit codes: 0 fine, 1 problems in the model, 2 bad use, 3 input unreadable or no model, 4 "
    "output not written; of several models all are done, and the largest code counts",
    "Códigos de saída: 0 tudo certo, 1 problemas no modelo, 2 uso incorreto, 3 entrada ilegível ou "
    "que não é modelo, 4 saída não gravada; de vários modelos, todos são feitos e vale o maior "
    "código"};

// ---- manual
inline constexpr Text manualName{"NAME", "NOME"};
inline constexpr Text manualTitle{"export structural models as IFC2X3 files",
                                  "exporta modelos de estruturas como arquivos IFC2X3"};
inline constexpr Text manualSynopsis{"SYNOPSIS", "SINOPSE"};
inline constexpr Text manualDescription{"DESCRIPTION", "DESCRIÇÃO"};
inline constexpr Text manualModels{
    "Models are JSON files (see docs/model-format.md) or the batch text files that the host "
    "writes.",
    "Os modelos são arquivos JSON (veja docs/model-format.md) ou os arquivos de texto batch que o "
    "programa hospedeiro grava."};
inline constexpr Text manualCommands{"COMMANDS", "COMANDOS"};
inline constexpr Text manualExitStatus{"EXIT STATUS", "CÓDIGOS DE SAÍDA"};
inline constexpr Text manualEnvironment{"ENVIRONMENT", "AMBIENTE"};
inline constexpr Text manualLanguage{
    "The language of the messages: pt, português, en or english, in any case and with a country "
    "behind (pt_BR); anything else is an error.",
    "O idioma das mensagens: pt, português, en ou english, em maiúsculas ou minúsculas e também "
    "com o país (pt_BR); qualquer outro valor é um erro."};
inline constexpr Text manualLocale{
    "Without EXPORTIFC_LANG the first of these that is set decides: Portuguese or, for any other "
    "language, English. Without them, on Windows, the language of the system.",
    "Sem EXPORTIFC_LANG decide a primeira destas que tem valor: português ou, para qualquer outro "
    "idioma, inglês. Sem elas, no Windows, o idioma do sistema."};
inline constexpr Text manualViewer{"The viewer's page, if it does not lie beside the program.",
                                   "A página do visualizador, se não está junto ao programa."};
inline constexpr Text manualExamples{"EXAMPLES", "EXEMPLOS"};

// ---- help
inline constexpr Text helpUsage{"Usage", "Uso"};
inline constexpr Text helpOptions{"Options", "Opções"};
inline constexpr Text helpPositionals{"Arguments", "Argumentos"};
inline constexpr Text helpCommands{"Commands", "Comandos"};
inline constexpr Text helpCommand{"COMMAND", "COMANDO"};
inline constexpr Text helpOptionsWord{"OPTIONS", "OPÇÕES"};
inline constexpr Text helpRequired{"REQUIRED", "REQUERIDO"};
inline constexpr Text helpExcludes{"Excludes", "Exclui"};
inline constexpr Text wordModel{"MODEL", "MODELO"};
inline constexpr Text wordInput{"INPUT", "ENTRADA"};
inline constexpr Text wordFamily{"WORD", "PALAVRA"};
inline constexpr Text wordFile{"FILE", "ARQUIVO"};
inline constexpr Text wordFolder{"FOLDER", "PASTA"};
inline constexpr Text wordNumber{"N", "N"};
inline constexpr Text useHelp{"{0} (see exportifc {1}--help)", "{0} (veja exportifc {1}--help)"};
inline constexpr Text useMissing{"{0} is missing; write {1}", "falta {0}; escreva {1}"};
inline constexpr Text useCommandFirst{"a command comes first; write exportifc {0} {1}",
                                      "primeiro vem um comando; escreva exportifc {0} {1}"};
inline constexpr Text useNoCommand{"\"{0}\" is no command", "\"{0}\" não é um comando"};
inline constexpr Text useCommands{"; the commands are {0}", "; os comandos são {0}"};
inline constexpr Text useNoOption{"{0} has no option {1}", "{0} não tem a opção {1}"};
inline constexpr Text useOptionOf{"{0} is an option of {1}; write exportifc {1} {0} ...",
                                  "{0} é uma opção de {1}; escreva exportifc {1} {0} ..."};
inline constexpr Text useOrder{"{0} stands before its command; write exportifc {1} {0} ...",
                               "{0} está antes do comando; escreva exportifc {1} {0} ..."};
inline constexpr Text useNameWithDash{"{0} is read as an option; write ./{0} for the file",
                                      "{0} é lido como opção; escreva ./{0} para o arquivo"};
inline constexpr Text useTooMany{"\"{0}\" is one name too many; write {1}",
                                 "\"{0}\" é um nome a mais; escreva {1}"};
inline constexpr Text useTwice{"{0} is given {1} times ({2}), but counts only once",
                               "{0} foi dado {1} vezes ({2}), mas só vale uma"};
inline constexpr Text useNoValue{"{0} takes no value; write {0} alone",
                                 "{0} não leva valor; escreva só {0}"};
inline constexpr Text useNeedsValue{"{0} needs a value; write {0} {1}",
                                    "{0} precisa de um valor; escreva {0} {1}"};
inline constexpr Text useValueIsOption{
    "{0} needs a value, but the option {1} follows; write {0} {2} {1} (a file of that name is "
    "./{1})",
    "{0} precisa de um valor, mas segue a opção {1}; escreva {0} {2} {1} (um arquivo com esse nome "
    "é "
    "./{1})"};
inline constexpr Text useOneWord{"\"{0}\" is one word; write {1} {2} without the quotes",
                                 "\"{0}\" é uma palavra só; escreva {1} {2} sem as aspas"};
inline constexpr Text useDash{"{0} does not begin with a hyphen; did you mean {1}?",
                              "{0} não começa com um hífen; você quis dizer {1}?"};
inline constexpr Text useLanguage{
    "{0} is no option; the variable EXPORTIFC_LANG names the language",
    "{0} não é uma opção; a variável EXPORTIFC_LANG indica o idioma"};
inline constexpr Text useEmptyName{"{0} \"\": a name cannot be empty",
                                   "{0} \"\": um nome não pode ser vazio"};
inline constexpr Text useExcluded{"{0} and {1} do not go together", "{0} e {1} não vão juntas"};
inline constexpr Text useWrong{"wrong value: {0}", "valor errado: {0}"};
inline constexpr Text languageUnknown{
    "EXPORTIFC_LANG is \"{0}\"; allowed: pt, português, en, english",
    "EXPORTIFC_LANG é \"{0}\"; permitido: pt, português, en, english"};
inline constexpr Text unexpected{"unexpected failure: {0}", "falha inesperada: {0}"};
inline constexpr Text useOneOutput{"-o names one file, but there are {0} models; use --out-dir",
                                   "-o indica um arquivo, mas há {0} modelos; use --out-dir"};
inline constexpr Text useJobs{"--jobs {0}: must be a whole number from 1 to 64",
                              "--jobs {0}: deve ser um número inteiro de 1 a 64"};
inline constexpr Text useInputOnce{"- (standard input) can be given only once",
                                   "- (a entrada padrão) só pode ser indicada uma vez"};
inline constexpr Text useHtmlOutput{"--html needs an IFC file that is not standard output",
                                    "--html precisa de um arquivo IFC que não seja a saída padrão"};
inline constexpr Text useTerminal{
    "the IFC file would fill the terminal; name it with -o, or send it to a pipe",
    "o arquivo IFC encheria o terminal; indique-o com -o, ou envie-o a um pipe"};

// ---- summary
inline constexpr Text sumBars{"bars written", "barras gravadas"};
inline constexpr Text sumOf{"{0} of {1}", "{0} de {1}"};
inline constexpr Text sumSkipped{"left out", "deixadas fora"};
inline constexpr Text sumInvisible{"{0} invisible", "{0} {0:invisível|invisíveis}"};
inline constexpr Text sumType10{"{0} of type 10", "{0} do tipo 10"};
inline constexpr Text sumTooLong{"{0} with a section text too long",
                                 "{0} com texto de seção longo demais"};
inline constexpr Text sumElements{"elements", "elementos"};
inline constexpr Text sumUnknown{"unknown profiles", "perfis desconhecidos"};
inline constexpr Text sumUnknownRow{"\"{0}\": {1}, first: bar {2}",
                                    "\"{0}\": {1}, primeira: barra {2}"};
inline constexpr Text sumSize{"size", "tamanho"};
inline constexpr Text sumBytes{"{0} {0:byte|bytes}, {1} {1:line|lines}",
                               "{0} {0:byte|bytes}, {1} {1:linha|linhas}"};
inline constexpr Text sumTime{"time", "tempo"};
inline constexpr Text sumSeconds{"{0} s", "{0} s"};
inline constexpr Text none{"none", "nenhum"};
inline constexpr Text noneBars{"none", "nenhuma"};

// ---- progress
inline constexpr Text progressLine{
    "{0} %  {1} of {2} {2:bar|bars}  {3}/s  {4} s left",
    "{0} %  {1} de {2} {2:barra|barras}  {3}/s  {4:falta|faltam} {4} s"};

}  // namespace texts

}  // namespace exportifc::host
