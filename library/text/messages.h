// What is said of models, in every language.
#pragma once

#include "library/text/text.h"

namespace exportifc::texts {

// ---- numbers, one character each
inline constexpr Text decimalSign{".", ","};
inline constexpr Text thousandsSign{",", "."};

// ---- kinds of message
inline constexpr Text error{"error", "erro"};
inline constexpr Text warning{"warning", "aviso"};
inline constexpr Text note{"note", "nota"};

// ---- files
inline constexpr Text cannotRead{"cannot read {0}: {1}", "não foi possível ler {0}: {1}"};
inline constexpr Text cannotWrite{"cannot write {0}: {1}", "não foi possível gravar {0}: {1}"};
inline constexpr Text errorNoSpace{"no space left on the disk", "não há espaço no disco"};
inline constexpr Text errorNotAllowed{"permission denied (read-only, or open in another program?)",
                                      "sem permissão (só de leitura ou aberto em outro programa?)"};
inline constexpr Text errorNoFolder{"the file or its folder does not exist",
                                    "o arquivo ou a pasta não existe"};
inline constexpr Text errorThisFolder{"the folder {0} does not exist", "a pasta {0} não existe"};
inline constexpr Text errorNoFile{"the file does not exist", "o arquivo não existe"};
inline constexpr Text errorNoMatch{"no file matches the pattern",
                                   "nenhum arquivo corresponde ao padrão"};
inline constexpr Text errorMayNotRead{"no permission to read it", "sem permissão de leitura"};
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

// ---- reading
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
inline constexpr Text zippedFile{"a zip, not a model; exportifc view shows an .ifczip",
                                 "um zip, não um modelo; exportifc view mostra um .ifczip"};
inline constexpr Text oldWorkbook{
    "an old workbook (.xls), or one with a password; save it as .xlsx, without a password",
    "uma planilha antiga (.xls) ou com senha; salve-a como .xlsx, sem senha"};
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
inline constexpr Text sectionWithoutText{"the section has neither \"text\" nor \"catalogue\"",
                                         "a seção não tem nem \"text\" nem \"catalogue\""};
inline constexpr Text catalogueAndText{
    "the catalogue gives text and dimensions of \"{0}\": \"text\" and \"dims\" cannot stand "
    "beside \"catalogue\"",
    "o catálogo dá texto e dimensões de \"{0}\": \"text\" e \"dims\" não podem ficar ao lado de "
    "\"catalogue\""};
inline constexpr Text notInCatalogue{"the catalogue has no section \"{0}\"",
                                     "o catálogo não tem a seção \"{0}\""};
inline constexpr Text catalogueAdvice{"; exportifc sections lists all",
                                      "; exportifc sections lista todas"};
inline constexpr Text materialsNotClosed{
    "unknown key \"{0}\"; are the materials closed by a \"}\" before \"{1}\"?",
    "chave desconhecida \"{0}\"; os materiais estão fechados por um \"}\" antes de \"{1}\"?"};
inline constexpr Text sectionNotClosed{
    "unknown key \"{0}\"; is the section \"{1}\" closed by a \"}\" before it?",
    "chave desconhecida \"{0}\"; a seção \"{1}\" foi fechada com \"}\" antes dela?"};
inline constexpr Text unknownKey{"unknown key \"{0}\"; allowed: {1}",
                                 "chave desconhecida \"{0}\"; permitidas: {1}"};
inline constexpr Text keyTwice{"the key \"{0}\" stands twice",
                               "a chave \"{0}\" aparece duas vezes"};
inline constexpr Text keyMissing{"the key \"{0}\" is missing", "falta a chave \"{0}\""};
inline constexpr Text valueNotAllowed{"{0} is not allowed here; allowed: {1}",
                                      "{0} não é permitido aqui; permitido: {1}"};
inline constexpr Text objectNotAllowed{"an object {…} is not allowed here; allowed: {0}",
                                       "um objeto {…} não é permitido aqui; permitido: {0}"};
inline constexpr Text arrayNotAllowed{"an array […] is not allowed here; allowed: {0}",
                                      "uma lista […] não é permitida aqui; permitido: {0}"};
inline constexpr Text modelMustBeObject{"a model is an object {…}", "um modelo é um objeto {…}"};
inline constexpr Text threeCoordinates{"a node has three coordinates [x, y, z], this one {0}",
                                       "um nó tem três coordenadas [x, y, z], este tem {0}"};
inline constexpr Text twoNodes{"a bar has two nodes [first, second], this one {0}",
                               "uma barra tem dois nós [inicial, final], esta tem {0}"};
inline constexpr Text tenDims{"a section has at most ten dimensions",
                              "uma seção tem no máximo dez dimensões"};
inline constexpr Text allowedModel{"an object {…}", "um objeto {…}"};
inline constexpr Text allowedTruth{"true, false", "true, false"};
inline constexpr Text allowedText{"a text", "um texto"};
inline constexpr Text allowedNumber{"a number", "um número"};
inline constexpr Text allowedArray{"an array […]", "uma lista […]"};
inline constexpr Text allowedNode{"[x, y, z]", "[x, y, z]"};
inline constexpr Text allowedBar{"a bar {\"nodes\": [0, 1], \"section\": \"…\"}",
                                 "uma barra {\"nodes\": [0, 1], \"section\": \"…\"}"};
inline constexpr Text allowedMaterials{"an object with a material for each name",
                                       "um objeto com um material para cada nome"};
inline constexpr Text allowedMaterial{"a material {\"density\": 7850}",
                                      "um material {\"density\": 7850}"};
inline constexpr Text allowedDensity{"a number above 0, in kg/m³",
                                     "um número acima de 0, em kg/m³"};
inline constexpr Text allowedMaterialName{"the name of a material", "o nome de um material"};
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
    "9; above it {2} {2:line is|lines are} missing; from here on bars are not checked",
    "as doze linhas das barras deixam de encaixar: o texto de seção \"{0}\" é a linha {1} de sua "
    "barra, não a 9; acima dele {2:falta|faltam} {2} {2:linha|linhas}; daqui em diante as barras "
    "não são verificadas"};
inline constexpr Text batchLinesTooMany{
    "the twelve lines of the bars no longer fit: the section text \"{0}\" is line {1} of its bar, "
    "not "
    "9; above it {2} {2:line is|lines are} too many; from here on bars are not checked",
    "as doze linhas das barras deixam de encaixar: o texto de seção \"{0}\" é a linha {1} de sua "
    "barra, não a 9; acima dele {2:sobra|sobram} {2} {2:linha|linhas}; daqui em diante as barras "
    "não são verificadas"};
inline constexpr Text batchBarCut{
    "the file ends in the middle of the bar, behind {0} of its 12 lines",
    "o arquivo termina no meio da barra, depois de {0} de suas 12 linhas"};
inline constexpr Text batchMoreBars{
    "the file announces {0} {0:bar|bars}, but holds {1}; the others are left out",
    "o arquivo anuncia {0} {0:barra|barras}, mas contém {1}; as outras ficam fora"};

// ---- workbooks
inline constexpr Text workbookLocked{"the workbook is encrypted; save it without a password",
                                     "a planilha está cifrada; salve-a sem senha"};
inline constexpr Text workbookOtherZip{
    "the workbook is packed in a way that this program does not read; save it as .xlsx again",
    "este programa não lê uma planilha compactada assim; salve-a de novo como .xlsx"};
inline constexpr Text workbookDamaged{"the workbook is damaged: its zip does not unpack",
                                      "a planilha está danificada: seu zip não se extrai"};
inline constexpr Text workbookNone{"the zip holds no workbook; save the model as .xlsx",
                                   "o zip não contém uma planilha; salve o modelo como .xlsx"};
inline constexpr Text workbookBinary{"a binary workbook (.xlsb); save it as .xlsx",
                                     "uma planilha binária (.xlsb); salve-a como .xlsx"};
inline constexpr Text workbookPartMissing{"the workbook is damaged: it has no \"{0}\"",
                                          "a planilha está danificada: falta \"{0}\""};
inline constexpr Text workbookBadXml{"the workbook is damaged: \"{0}\" is not sound XML",
                                     "a planilha está danificada: \"{0}\" não é XML correto"};
inline constexpr Text workbookDeclarations{
    "the workbook is refused: \"{0}\" declares a document type, as no spreadsheet program does",
    "a planilha é recusada: \"{0}\" declara um tipo de documento, o que nenhum programa de "
    "planilhas faz"};
inline constexpr Text workbookOutsized{
    "the workbook is refused: \"{0}\" has a tag of more than 1 MB, or nests its elements too deep",
    "a planilha é recusada: \"{0}\" tem uma marca de mais de 1 MB, ou elementos aninhados demais"};
inline constexpr Text workbookTooLarge{"the workbook is refused: it unpacks to more than {0} MB",
                                       "a planilha é recusada: descompactada, ela passa de {0} MB"};
inline constexpr Text workbookLargeFile{"the workbook is refused: its file has more than {0} MB",
                                        "a planilha é recusada: seu arquivo passa de {0} MB"};
inline constexpr Text workbookManyCells{"the workbook has more than {0} cells",
                                        "a planilha tem mais de {0} células"};
inline constexpr Text workbookManyTexts{"the workbook has more than {0} different texts",
                                        "a planilha tem mais de {0} textos diferentes"};
inline constexpr Text workbookMuchText{"the texts of the workbook's cells have more than {0} MB",
                                       "os textos das células da planilha passam de {0} MB"};
inline constexpr Text workbookBadRow{
    "the workbook is damaged: \"{0}\" is no number for a row here",
    "a planilha está danificada: \"{0}\" não serve aqui como número de linha"};
inline constexpr Text workbookBadCell{
    "the workbook is damaged: \"{0}\" is no name for a cell here",
    "a planilha está danificada: \"{0}\" não serve aqui como nome de célula"};
inline constexpr Text workbookNoText{"the workbook is damaged: it has no text number {0}",
                                     "a planilha está danificada: não há um texto de número {0}"};
inline constexpr Text workbookNoNumber{"the workbook is damaged: \"{0}\" is no number",
                                       "a planilha está danificada: \"{0}\" não é um número"};

// ---- tables
inline constexpr Text tableMissing{
    "the table \"{0}\" is missing or empty; a model has the tables nodes, sections and bars",
    "a tabela \"{0}\" falta ou está vazia; um modelo tem as tabelas nodes (nós), sections (seções) "
    "e "
    "bars (barras)"};
inline constexpr Text headerMissing{"the column \"{0}\" is missing", "falta a coluna \"{0}\""};
inline constexpr Text unknownHeader{"there is no column \"{0}\"; allowed: {1}",
                                    "não existe a coluna \"{0}\"; permitidas: {1}"};
inline constexpr Text headerTwice{"the column \"{0}\" stands here twice",
                                  "a coluna \"{0}\" aparece duas vezes"};
inline constexpr Text headerNone{"this column has no header", "esta coluna não tem cabeçalho"};
inline constexpr Text headerUnit{
    "the header must say its unit in brackets; allowed: {0}",
    "o cabeçalho deve dizer a unidade entre colchetes; permitido: {0}"};
inline constexpr Text cellEmpty{"a value is missing here", "falta um valor aqui"};
inline constexpr Text cellError{"the spreadsheet shows an error here, or has not computed it: {0}",
                                "a planilha mostra um erro aqui, ou não o calculou: {0}"};
inline constexpr Text nodeTwice{"the node \"{0}\" stands here twice",
                                "o nó \"{0}\" aparece duas vezes"};
inline constexpr Text sectionTwice{"the section \"{0}\" stands here twice",
                                   "a seção \"{0}\" aparece duas vezes"};
inline constexpr Text sectionOneWay{
    "the section \"{0}\" needs exactly one of text, family and catalogue",
    "a seção \"{0}\" precisa de exatamente um entre texto, família e catálogo"};
inline constexpr Text sectionNotRolled{"there is no rolled section \"{0}\" in the catalogue",
                                       "não há um perfil laminado \"{0}\" no catálogo"};
inline constexpr Text positiveNumber{"{0} is not allowed here; allowed: a number greater than 0",
                                     "{0} não é permitido aqui; permitido: um número maior que 0"};
inline constexpr Text densityAlone{"a density needs the name of its material",
                                   "uma densidade precisa do nome do seu material"};
inline constexpr Text otherDensity{"the material \"{0}\" has another density above",
                                   "o material \"{0}\" tem outra densidade acima"};
inline constexpr Text noSuchNode{"there is no node \"{0}\"", "não existe o nó \"{0}\""};
inline constexpr Text noSuchSection{"there is no section \"{0}\"", "não existe a seção \"{0}\""};
inline constexpr Text allowedYesNo{"yes, no", "sim, não"};
inline constexpr Text yes{"yes", "sim"};
inline constexpr Text no{"no", "não"};
inline constexpr Text csvNotClosed{"the quote that begins this value is not closed",
                                   "as aspas que começam este valor não são fechadas"};
inline constexpr Text csvBehindQuote{
    "text stands behind the quote that closes this value; a quote in a value is doubled",
    "há texto depois das aspas que fecham este valor; aspas dentro de um valor são duplicadas"};
inline constexpr Text columnNode{"Name or number of the node, by which bars refer to it.",
                                 "Nome ou número do nó, pelo qual as barras o citam."};
inline constexpr Text columnCoordinate{
    "Coordinate, Z upwards. The header says the unit: [mm], [cm] or [m].",
    "Coordenada, Z para cima. O cabeçalho diz a unidade: [mm], [cm] ou [m]."};
inline constexpr Text columnSectionName{"Name of the section, by which bars refer to it.",
                                        "Nome da seção, pelo qual as barras a citam."};
inline constexpr Text columnText{
    "The whole section text, e.g. \"W 200 100 8 6\". Give text, or family and dimensions, or "
    "catalogue.",
    "O texto inteiro da seção, p. ex. \"W 200 100 8 6\". Indique o texto, ou família e dimensões, "
    "ou o "
    "catálogo."};
inline constexpr Text columnFamily{
    "Family word; its dimensions follow in d0 to d9. \"exportifc profiles\" explains them.",
    "Palavra da família; as dimensões seguem em d0 a d9. \"exportifc profiles\" as explica."};
inline constexpr Text columnCatalogue{"Name of a rolled section, e.g. HEB 180.",
                                      "Nome de um perfil laminado, p. ex. HEB 180."};
inline constexpr Text columnDimension{"Dimension in millimetres.", "Dimensão em milímetros."};
inline constexpr Text columnMaterial{"Name of the material.", "Nome do material."};
inline constexpr Text columnDensity{"Density of the material, kg/m³.",
                                    "Densidade do material, kg/m³."};
inline constexpr Text columnBar{"Name of the bar, if it has one.", "Nome da barra, se houver."};
inline constexpr Text columnEnd{"Node at this end.", "Nó desta extremidade."};
inline constexpr Text columnBarSection{"Name of the section.", "Nome da seção."};
inline constexpr Text columnType{"Type of the bar: a name of the list, or 0 to 11.",
                                 "Tipo da barra: um nome da lista, ou de 0 a 11."};
inline constexpr Text columnVisible{"yes or no; empty is yes.", "sim ou não; vazio é sim."};
inline constexpr Text columnAngle{
    "Angle of the section about the bar. The header says the unit: [deg] or [rad].",
    "Ângulo da seção em torno da barra. O cabeçalho diz a unidade: [deg] ou [rad]."};
inline constexpr Text columnQuarterTurns{"Quarter turns of the section, added to the angle.",
                                         "Quartos de volta da seção, somados ao ângulo."};
inline constexpr Text columnLayer{"What the bar is grouped by.", "Grupo a que a barra pertence."};
inline constexpr Text oneTable{
    "a CSV file is one table of several; the model is the folder that it lies in, or a zip of them",
    "um arquivo CSV é uma de várias tabelas; o modelo é a pasta em que ele está, ou um zip delas"};
inline constexpr Text tablesDamaged{"the zip of tables is damaged",
                                    "o zip das tabelas está danificado"};
inline constexpr Text tablesTooLarge{"the tables are refused: they have more than {0} MB",
                                     "as tabelas são recusadas: passam de {0} MB"};
inline constexpr Text formatTables{"a workbook with tables", "uma planilha com tabelas"};
inline constexpr Text formatCsv{"CSV tables", "tabelas CSV"};
inline constexpr Text lossTitle{"tables have no title: \"{0}\" is lost",
                                "tabelas não têm título: \"{0}\" se perde"};
inline constexpr Text tablesNoName{"a section without a name cannot stand in a table",
                                   "uma seção sem nome não cabe numa tabela"};
inline constexpr Text tablesTooLong{"a sheet holds {0} rows; this model has {1}",
                                    "uma planilha comporta {0} linhas; este modelo tem {1}"};

// ---- problems of a model
inline constexpr Text bar{"bar {0}", "barra {0}"};
inline constexpr Text problemNodeIndex{"node {0} does not exist; the model has the nodes 0 to {1}",
                                       "o nó {0} não existe; o modelo tem os nós 0 a {1}"};
inline constexpr Text problemNoNodes{"node {0} does not exist; the model has no nodes",
                                     "o nó {0} não existe; o modelo não tem nós"};
inline constexpr Text problemSection{"section \"{0}\" is not defined",
                                     "a seção \"{0}\" não está definida"};
inline constexpr Text problemMaterial{"material \"{0}\" is not defined",
                                      "o material \"{0}\" não está definido"};
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
inline constexpr Text materialsAllowed{"; allowed: {0}", "; permitidos: {0}"};
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
inline constexpr Text noteUnread{
    "section \"{0}\": {1} reads no dimension behind {2}; {3} is left aside",
    "seção \"{0}\": {1} não lê dimensões depois de {2}; {3} fica de lado"};
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
inline constexpr Text noteDensity{
    "material \"{0}\": {1} kg/m³ is unusual; densities are in kg/m³, that of steel is 7850",
    "material \"{0}\": {1} kg/m³ é incomum; densidades são em kg/m³, a do aço é 7850"};
inline constexpr Text noteUnusedNodes{
    "{0} {0:node|nodes} used by no bar, the first is node {1}",
    "{0} {0:nó|nós} sem nenhuma barra que {0:o|os} use, o primeiro é o nó {1}"};

// ---- export
inline constexpr Text manyBars{"{0} {0:bar|bars}", "{0} {0:barra|barras}"};

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
inline constexpr Text lossBarNames{
    "the batch text file has no names of bars: {0} {0:bar loses its|bars lose theirs}",
    "o arquivo de texto não tem nomes de barras: {0} {0:barra perde|barras perdem} o seu"};
inline constexpr Text lossLayers{
    "the batch text file has no layers: {0} {0:bar loses its|bars lose theirs}",
    "o arquivo de texto não tem camadas: {0} {0:barra perde|barras perdem} a sua"};
inline constexpr Text lossMaterials{
    "the batch text file has no materials: {0} {0:is|are} lost with {0:its density|their "
    "densities}",
    "o arquivo de texto não tem materiais: {0} {0:se perde com sua densidade|se perdem com suas "
    "densidades}"};
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

// ---- kinds of file
inline constexpr Text formatExchange{"an IFC file", "um arquivo IFC"};
inline constexpr Text formatPage{"a page", "uma página"};
inline constexpr Text formatTakeoff{"a take-off", "um levantamento"};
inline constexpr Text formatJson{"a JSON model", "um modelo JSON"};
inline constexpr Text formatSaf{"a SAF workbook", "uma planilha SAF"};
inline constexpr Text formatBatch{"a batch text file", "um arquivo de texto do modo batch"};

// ---- profiles
inline constexpr Text secondSide{"the width is d3, or d2, or d1: the first of at least 0.001",
                                 "a largura é d3, ou d2, ou d1: a primeira de ao menos 0,001"};
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

// ---- summary
inline constexpr Text sumInvisible{"{0} invisible", "{0} {0:invisível|invisíveis}"};
inline constexpr Text sumType10{"{0} of type 10", "{0} do tipo 10"};
inline constexpr Text sumTooLong{"{0} with a section text too long",
                                 "{0} com texto de seção longo demais"};

// ---- take-off
inline constexpr Text takeoffSections{"Sections", "Seções"};
inline constexpr Text takeoffGroups{"Groups", "Grupos"};
inline constexpr Text takeoffLayers{"Layers", "Camadas"};
inline constexpr Text takeoffCuts{"Cut list", "Lista de corte"};
inline constexpr Text takeoffTotal{"Total", "Total"};
inline constexpr Text takeoffSection{"section", "seção"};
inline constexpr Text takeoffText{"dimensions", "dimensões"};
inline constexpr Text takeoffMaterial{"material", "material"};
inline constexpr Text takeoffGroup{"group", "grupo"};
inline constexpr Text takeoffLayer{"layer", "camada"};
inline constexpr Text takeoffFrames{"frames", "pórticos"};
inline constexpr Text takeoffTrusses{"trusses", "treliças"};
inline constexpr Text takeoffDirect{"in no assembly", "fora de conjuntos"};
inline constexpr Text takeoffNoLayer{"(no layer)", "(sem camada)"};
inline constexpr Text takeoffBars{"bars", "barras"};
inline constexpr Text takeoffPieces{"pieces", "peças"};
inline constexpr Text takeoffLength{"length [m]", "comprimento [m]"};
inline constexpr Text takeoffArea{"area [cm²]", "área [cm²]"};
inline constexpr Text takeoffMassPerMetre{"mass [kg/m]", "massa [kg/m]"};
inline constexpr Text takeoffMass{"mass [kg]", "massa [kg]"};
inline constexpr Text takeoffPaintPerMetre{"paint [m²/m]", "pintura [m²/m]"};
inline constexpr Text takeoffPaint{"paint [m²]", "pintura [m²]"};
inline constexpr Text takeoffShortest{"shortest [mm]", "menor [mm]"};
inline constexpr Text takeoffLongest{"longest [mm]", "maior [mm]"};
inline constexpr Text takeoffCut{"cut length [mm]", "corte [mm]"};

// ---- cells of workbooks
inline constexpr Text noSheet{"the workbook has no sheet {0}", "a planilha não tem a aba {0}"};
inline constexpr Text sheetNoColumn{"the sheet {0} has no column \"{1}\"",
                                    "a aba {0} não tem a coluna \"{1}\""};
inline constexpr Text cellNoNumber{"\"{0}\" is not a number", "\"{0}\" não é um número"};
inline constexpr Text cellNotAllowed{"\"{0}\" is not allowed here; allowed: {1}",
                                     "\"{0}\" não é permitido aqui; permitido: {1}"};
inline constexpr Text cellTwice{"the name \"{0}\" stands twice",
                                "o nome \"{0}\" aparece duas vezes"};
inline constexpr Text cellUnknown{"\"{0}\" is not in the sheet {1}", "\"{0}\" não está na aba {1}"};

// ---- SAF workbooks
inline constexpr Text noModelSheets{
    "a workbook without the sheets of a model: a SAF workbook has StructuralCurveMember, tables "
    "have bars",
    "uma planilha sem as abas de um modelo: uma planilha SAF tem StructuralCurveMember, tabelas "
    "têm bars (barras)"};
inline constexpr Text safNotWritten{"SAF workbooks are read, not written",
                                    "planilhas SAF são lidas, mas não gravadas"};
inline constexpr Text safParameters{
    "\"{0}\" are not the dimensions of this shape: {1}, each above 0",
    "\"{0}\" não são as dimensões desta forma: {1}, cada uma acima de 0"};
inline constexpr Text safOneNode{"a member has at least two nodes",
                                 "um membro tem pelo menos dois nós"};
inline constexpr Text safSpans{"the spans make up {0} of the length, not 1",
                               "os trechos somam {0} do comprimento, e não 1"};
inline constexpr Text safAssumed{"\"{0}\" is not given; taken as {1}",
                                 "falta \"{0}\"; adotado {1}"};
inline constexpr Text safNotRead{"{0} {0:row|rows} not carried over",
                                 "{0} {0:linha não transferida|linhas não transferidas}"};
inline constexpr Text safArea{
    "section {0}: \"{1}\" has {2} cm², the workbook says {3} cm²; are the dimensions those of the "
    "shape?",
    "seção {0}: \"{1}\" tem {2} cm², a planilha diz {3} cm²; as dimensões são as da "
    "forma?"};
inline constexpr Text safCurved{"{0} curved {0:member is|members are} left out: {1}",
                                "{0} {0:membro curvo fica|membros curvos ficam} de fora: {1}"};
inline constexpr Text safTapered{"{0} {0:member|members} of changing section left out: {1}",
                                 "{0} {0:membro|membros} de seção variável de fora: {1}"};
inline constexpr Text safNoSlab{"{0} {0:rib|ribs} without a slab to stand on left out: {1}",
                                "{0} {0:nervura|nervuras} sem laje de apoio de fora: {1}"};
inline constexpr Text safNoSide{
    "the LCS of {0} {0:member|members} lies along the axis; z stands up instead: {1}",
    "o LCS de {0} {0:membro segue|membros segue} o próprio eixo; em vez disso z fica para cima: "
    "{1}"};
inline constexpr Text safUnknownType{
    "{0} {0:member|members} of a type without a bar type, taken as \"member\": {1}",
    "{0} {0:membro|membros} de um tipo sem tipo de barra, lidos como \"member\": {1}"};
inline constexpr Text safTwoOffsets{
    "{0} {0:member has|members have} structural and analysis eccentricities that differ; the "
    "structural ones move the bar: {1}",
    "{0} {0:membro tem|membros têm} excentricidades estruturais e de análise diferentes; as "
    "estruturais movem a barra: {1}"};
inline constexpr Text safAlignment{
    "the alignment along {0} {0:member|members} of several sections is not carried over; centroids "
    "are on the axis: {1}",
    "o alinhamento ao longo de {0} {0:membro|membros} de várias seções não é transferido; os "
    "centroides ficam no eixo: {1}"};
inline constexpr Text safRibOffset{
    "{0} {0:rib is|ribs are} not moved as {0:its|their} alignment or eccentricity says: {1}",
    "{0} {0:nervura não é movida|nervuras não são movidas} como diz o alinhamento ou a "
    "excentricidade: {1}"};

// ---- shapes without a family
inline constexpr Text problemUndrawn{"no section family draws \"{0}\"; used by {1}",
                                     "nenhuma família de seção desenha \"{0}\"; usada por {1}"};
inline constexpr Text adviceRectangle{
    "; --bounding-rectangle writes the rectangle around it, {0} x {1} mm",
    "; --bounding-rectangle grava o retângulo em volta dela, {0} x {1} mm"};

}  // namespace exportifc::texts
