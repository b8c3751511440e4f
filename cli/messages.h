// What the program says, in every language.
#pragma once

#include "library/text/messages.h"

namespace exportifc::cli::texts {

using namespace exportifc::texts;  // NOLINT(google-build-using-namespace): one table to its users

// ---- writing
inline constexpr Text standardOutput{"standard output", "saída padrão"};
inline constexpr Text standardError{"standard error", "saída de erros"};
inline constexpr Text standardInput{"standard input", "entrada padrão"};
inline constexpr Text cannotMakeFolder{"cannot make the folder {0}: {1}",
                                       "não foi possível criar a pasta {0}: {1}"};

// ---- the files of one call
inline constexpr Text sameFile{"{0} ({1}) and {2} ({3}) are the same file: choose another output",
                               "{0} ({1}) e {2} ({3}) são o mesmo arquivo: escolha outra saída"};
inline constexpr Text reservedName{
    "{0}: Windows keeps the name {1} for a device; choose another",
    "{0}: o Windows reserva o nome {1} para um dispositivo; escolha outro"};
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

// ---- zips
inline constexpr Text zipNotOneIfc{"the zip holds {0} files named .ifc instead of one",
                                   "o zip contém {0} arquivos .ifc em vez de um"};
inline constexpr Text zipDamaged{"the zip is damaged", "o zip está danificado"};
inline constexpr Text zipEncrypted{"the zip is encrypted; unpack it and give the IFC file",
                                   "o zip está cifrado; extraia e indique o arquivo IFC"};
inline constexpr Text zipOther{
    "the zip is made in a way that this program does not read; unpack it and give the IFC file",
    "este programa não lê um zip feito assim; extraia e indique o arquivo IFC"};
inline constexpr Text tooLargeForZip{
    "the IFC file has 4 GiB or more, which a zip does not hold; choose a name that ends in .ifc",
    "o arquivo IFC tem 4 GiB ou mais, que não cabem em um zip; escolha um nome que termine em "
    ".ifc"};

// ---- export
inline constexpr Text nothingWritten{"{0}: nothing was written", "{0}: nada foi gravado"};
inline constexpr Text stoppedAtBar{"stopped at {0} of {1}: {2}", "parou na {0} de {1}: {2}"};
inline constexpr Text stoppedByUser{"interrupted by the user; nothing was written",
                                    "interrompido pelo usuário; nada foi gravado"};
inline constexpr Text stoppedAfterModels{"interrupted by the user after {0} of {1} models",
                                         "interrompido pelo usuário depois de {0} de {1} modelos"};
inline constexpr Text outOfMemory{"not enough memory", "memória insuficiente"};
inline constexpr Text fileIncomplete{"the file has no end", "o arquivo ficou sem fim"};
inline constexpr Text exportProblemsMore{
    "{0} {0:problem|problems}; exportifc check shows all",
    "{0} {0:problema|problemas}; exportifc check mostra todos"};
inline constexpr Text moduleUnknownProfile{"\"Perfil Desconhecido\" (unknown profile)",
                                           "\"Perfil Desconhecido\""};
inline constexpr Text moduleBarWithoutRecord{
    "\"Problema ao exportar Barra\" (a bar could not be exported)",
    "\"Problema ao exportar Barra\""};
inline constexpr Text moduleMessage{"{0}: section \"{1}\"", "{0}: seção \"{1}\""};
inline constexpr Text jobsProgress{"{0} of {1} {1:model|models}", "{0} de {1} {1:modelo|modelos}"};
inline constexpr Text jobsFailed{", {0} failed", ", {0} {0:falhou|falharam}"};

// ---- check
inline constexpr Text checkSummary{"{0} {0:bar|bars}, {1}", "{0} {0:barra|barras}, {1}"};
inline constexpr Text checkNoProblems{"no problems", "nenhum problema"};
inline constexpr Text checkNotes{"{0}, {1} {1:note|notes}", "{0}, {1} {1:nota|notas}"};
inline constexpr Text checkProblems{"{0} {0:problem|problems}", "{0} {0:problema|problemas}"};

// ---- convert
inline constexpr Text convertSameFormat{
    "{0}: {1} is {2} already: choose a name that ends in one of {3}",
    "{0}: {1} já é {2}: escolha um nome que termine em um destes: {3}"};

inline constexpr Text convertCsv{
    "{0}: tables are several CSV files; write -o {1} for a folder of them, or exportifc takeoff -o "
    "{0} for the lists of a take-off",
    "{0}: as tabelas são vários arquivos CSV; escreva -o {1} para uma pasta com eles, ou exportifc "
    "takeoff -o {0} para as listas de materiais"};

// ---- kinds of file
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
inline constexpr Text namedByVariable{"{0} (named by the variable {1})",
                                      "{0} (indicado pela variável {1})"};
inline constexpr Text badTemplate{"{0} is not the viewer's page",
                                  "{0} não é a página do visualizador"};
inline constexpr Text tooLargeForPage{
    "{0} has more than 1 GiB, the most that a page can show: look at it in another program",
    "{0} tem mais de 1 GiB, o máximo que uma página mostra: veja-o em outro programa"};

// ---- profiles
inline constexpr Text explainNotRead{"not read by this family", "esta família não a lê"};
inline constexpr Text profilesTwoHalves{" (two halves)", " (duas metades)"};
inline constexpr Text profilesNoProfile{"no profile: both halves become squares of 4 mm",
                                        "sem perfil: as duas metades viram quadrados de 4 mm"};
inline constexpr Text profilesFamily{"family word", "família"};
inline constexpr Text sectionsName{"name", "nome"};
inline constexpr Text sectionsStandard{"standard", "norma"};
inline constexpr Text sectionsDepth{"depth", "altura"};
inline constexpr Text sectionsWidth{"width", "largura"};
inline constexpr Text sectionsFlange{"flange", "mesa"};
inline constexpr Text sectionsWeb{"web", "alma"};
inline constexpr Text sectionsMass{"mass", "massa"};
inline constexpr Text sectionsArea{"area", "área"};
inline constexpr Text sectionsText{"section text", "texto da seção"};
inline constexpr Text sectionsModel{"in a JSON model", "num modelo JSON"};
inline constexpr Text sectionsNone{"the catalogue has none such",
                                   "o catálogo não tem nenhum assim"};
inline constexpr Text sectionsRange{
    "{0} is a number or a range, as 300, 280..320, 280.. or ..320, not \"{1}\"",
    "{0} é um número ou uma faixa, como 300, 280..320, 280.. ou ..320, não \"{1}\""};
inline constexpr Text sectionsDrawnBy{"Drawn by the family `{0}`. Figures: {1}.",
                                      "Desenhados pela família `{0}`. Valores: {1}."};
inline constexpr Text sectionsPage{
    "# Rolled sections\n\nMade by `exportifc sections --markdown`; do not edit.\n\nA JSON model "
    "takes a section from here by its name: `{\"catalogue\": \"HEB180\"}`. Lengths are "
    "millimetres; "
    "mass and area are those that the standards publish.\n\nWhat is drawn has straight plates and "
    "sharp corners:\n\n| series | what is left out | mass of the drawn shape against the published "
    "one |\n|---|---|---|\n| IPE, HEA, HEB, HEM, W, HP | fillets | up to 6 % less |\n| UPE | "
    "fillets | "
    "up to 4.5 % less |\n| UPN | the taper of the flanges, drawn parallel with the thickness of "
    "their "
    "middle | within 1.5 % |\n| L | fillet and rounded toes | up to 1.5 % less |\n| CHS | nothing "
    "| "
    "within 1 %, by rounding |\n| SHS, RHS | rounded corners | up to 4.6 % more |\n\nW and HP have "
    "the "
    "figures of ABNT NBR 15980, and those of ASTM A6 where it has no such size; their masses are "
    "nominal, some areas give up to 3 % more. Hollow sections have the sizes of EN 10210-2 and EN "
    "10219-2, with mass and area of hot-finished "
    "ones; cold-formed ones weigh a little less.\n\nNot in the catalogue: W above W 690x192 and "
    "single "
    "sizes whose published figures do not agree, pipes over 508 mm, IPN, IPE A and O, HE AA, "
    "unequal "
    "angles, and angles in inches.",
    "# Perfis laminados\n\nFeita por `exportifc sections --markdown`; não edite.\n\nUm modelo JSON "
    "toma daqui uma seção pelo nome: `{\"catalogue\": \"HEB180\"}`. Comprimentos em milímetros; "
    "massa "
    "e área são as que as normas publicam.\n\nO que é desenhado tem chapas retas e cantos "
    "vivos:\n\n| série | o que fica fora | massa do desenho em relação à publicada "
    "|\n|---|---|---|\n| "
    "IPE, HEA, HEB, HEM, W, HP | raios de concordância | até 6 % menos |\n| UPE | raios de "
    "concordância | até 4,5 % menos |\n| UPN | a inclinação das mesas, desenhadas paralelas com a "
    "espessura do seu meio | dentro de 1,5 % |\n| L | raio e pontas arredondadas | até 1,5 % menos "
    "|\n| CHS | nada | dentro de 1 %, pelo arredondamento |\n| SHS, RHS | cantos arredondados | "
    "até "
    "4,6 % mais |\n\nW e HP têm os valores da ABNT NBR 15980, e os da ASTM A6 onde ela não tem a "
    "bitola; suas massas são nominais, algumas áreas dão até 3 % mais. Os tubos têm as bitolas de "
    "EN 10210-2 e EN 10219-2, com massa e área dos acabados a quente; "
    "os formados a frio pesam um pouco menos.\n\nFora do catálogo: W acima "
    "de "
    "W 690x192 e bitolas cujos valores publicados não concordam, tubos acima de 508 mm, IPN, IPE A "
    "e "
    "O, HE AA, cantoneiras desiguais e cantoneiras em polegadas."};
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

// ---- arguments
inline constexpr Text helpProgram{
    "Turns structural models into IFC2X3 files, without the host application.",
    "Transforma modelos de estruturas em arquivos IFC2X3, sem o programa hospedeiro."};
inline constexpr Text helpExport{"Write models as IFC files", "Grava modelos como arquivos IFC"};
inline constexpr Text helpCheck{"Say what would go wrong, without writing",
                                "Diz o que daria errado, sem gravar"};
inline constexpr Text helpProfiles{"Show the section families and their dimensions",
                                   "Mostra as famílias de seções e suas dimensões"};
inline constexpr Text helpSections{"Show the catalogue of rolled sections",
                                   "Mostra o catálogo de perfis laminados"};
inline constexpr Text helpConvert{
    "Turn a model into another format: JSON, batch text, tables in a workbook or a folder",
    "Converte um modelo em outro formato: JSON, texto batch, tabelas em planilha ou pasta"};
inline constexpr Text helpTables{"Write tables to start from, with a small example",
                                 "Grava tabelas para começar, com um pequeno exemplo"};
inline constexpr Text helpTablesFile{
    "a workbook (.xlsx), or a folder for CSV files (ends in /)",
    "uma planilha (.xlsx), ou pasta para arquivos CSV (termina em /)"};
inline constexpr Text tablesName{
    "{0}: a template is a workbook, whose name ends in .xlsx, or a folder, whose name ends in /",
    "{0}: um modelo de tabelas é uma planilha, cujo nome termina em .xlsx, ou uma pasta, cujo nome "
    "termina em /"};
inline constexpr Text tablesThere{
    "{0} is there already and may hold a model of yours: choose another name, or remove it first",
    "{0} já existe e pode conter um modelo seu: escolha outro nome, ou remova-o antes"};
inline constexpr Text helpView{"Write a page that shows the structure in a browser",
                               "Grava uma página que mostra a estrutura no navegador"};
inline constexpr Text helpModels{
    "models: JSON, batch text, SAF workbooks, tables in a workbook or a folder; - is standard "
    "input",
    "modelos: JSON, texto batch, planilhas SAF, tabelas em planilha ou pasta; - é a entrada "
    "padrão"};
inline constexpr Text helpModel{
    "a model: JSON, batch text, SAF workbook, tables in a workbook or a folder; - is standard "
    "input",
    "um modelo: JSON, texto batch, planilha SAF, tabelas em planilha ou pasta; - é a entrada "
    "padrão"};
inline constexpr Text helpOutput{
    "the IFC file, zipped if its name ends in .ifczip; - is standard output (default: beside the "
    "model, .ifc)",
    "o arquivo IFC, zipado se o nome termina em .ifczip; - é a saída padrão (sem ela: junto ao "
    "modelo, .ifc)"};
inline constexpr Text helpOutDir{"folder for the IFC files", "pasta dos arquivos IFC"};
inline constexpr Text helpVisibleOnly{"leave invisible bars out",
                                      "deixa fora as barras invisíveis"};
inline constexpr Text helpStrict{"write nothing when the model has any problem that check finds",
                                 "não grava nada se o modelo tem algum problema que check aponta"};
inline constexpr Text helpTransliterate{
    "write accented letters of section texts as plain ones (ç as c)",
    "grava letras acentuadas dos textos de seção sem acento (ç como c)"};
inline constexpr Text helpBoundingRectangle{
    "write a shape that no section family draws as the rectangle around it",
    "grava uma forma que nenhuma família de seção desenha como o retângulo em volta dela"};
inline constexpr Text helpQuiet{"no summary, warnings or progress",
                                "sem resumo, avisos e andamento"};
inline constexpr Text helpJobs{"convert so many models side by side",
                               "converte tantos modelos ao mesmo tempo"};
inline constexpr Text helpHtml{"also write a page that shows it, beside the IFC file",
                               "grava também uma página que o mostra, junto ao arquivo IFC"};
inline constexpr Text helpTemplate{"the viewer's page, if not beside the program",
                                   "a página do visualizador, se não está junto ao programa"};
inline constexpr Text helpJson{"for programs: one JSON object on standard output",
                               "para programas: um objeto JSON na saída padrão"};
inline constexpr Text helpNoNotes{"do not say what is only unusual",
                                  "não diz o que é apenas incomum"};
inline constexpr Text helpFamily{
    "a family word, or a section text to explain (default: all families)",
    "uma palavra de família, ou um texto de seção a explicar (sem ela: todas as famílias)"};
inline constexpr Text helpSectionWords{
    "a series (HEB), the beginning of a name (W 310) or a name (HEB180)",
    "uma série (HEB), o começo de um nome (W 310) ou um nome (HEB180)"};
inline constexpr Text helpDepth{
    "only those so deep, in mm: 300 (about as much), 280..320, 280.. or ..320",
    "só os dessa altura, em mm: 300 (por volta disso), 280..320, 280.. ou ..320"};
inline constexpr Text helpMass{"only those of that mass, in kg/m; lightest first",
                               "só os dessa massa, em kg/m; o mais leve primeiro"};
inline constexpr Text helpSectionsMarkdown{"the page docs/sections.md",
                                           "a página docs/sections.md"};
inline constexpr Text helpSvg{"write a drawing of each family into this folder",
                              "grava um desenho de cada família nesta pasta"};
inline constexpr Text helpMarkdown{"the page docs/profiles.md", "a página docs/profiles.md"};
inline constexpr Text helpConvertOutput{
    "the other file, or a folder for CSV tables (ends in /); - is standard output",
    "o outro arquivo, ou pasta para tabelas CSV (termina em /); - é a saída padrão"};
inline constexpr Text helpConvertStrict{"write nothing when something would be lost",
                                        "não grava nada se algo se perderia"};
inline constexpr Text helpViewInput{"a model, an IFC file or an .ifczip",
                                    "um modelo, um arquivo IFC ou um .ifczip"};
inline constexpr Text helpViewOutput{"the page (default: beside the input, .html)",
                                     "a página (sem ela: junto à entrada, .html)"};
inline constexpr Text helpTakeoff{"List sections, lengths, masses and paint surfaces",
                                  "Lista seções, comprimentos, massas e áreas de pintura"};
inline constexpr Text helpTakeoffOutput{
    "write all lists as .csv or .xlsx, with the cut list; - is standard output",
    "grava todas as listas em .csv ou .xlsx, com a lista de corte; - é a saída padrão"};
inline constexpr Text helpDensity{
    "density of all bars in kg/m³ (default: of their material, otherwise 7850)",
    "massa específica de todas as barras em kg/m³ (sem ela: a do material ou 7850)"};
inline constexpr Text helpCuts{"with the cut list: how many bars of each length",
                               "com a lista de corte: quantas barras de cada comprimento"};
inline constexpr Text useJsonOutput{"--json goes to standard output; name a file with -o",
                                    "--json vai à saída padrão; indique um arquivo com -o"};
inline constexpr Text takeoffWeightless{
    "{0} {0:bar has|bars have} a section that is not drawn: without mass and paint in these lists",
    "{0} {0:barra tem|barras têm} uma seção que não é desenhada: sem massa e pintura nestas "
    "listas"};
inline constexpr Text takeoffName{"{0}: the lists are written as .csv or as .xlsx",
                                  "{0}: as listas são gravadas em .csv ou em .xlsx"};
inline constexpr Text takeoffDensity{
    "--density: {0} is no density of a building material in kg/m³, allowed are 100 to 25000; steel "
    "has 7850",
    "--density: {0} não é a massa específica de um material de construção em kg/m³, valem 100 a "
    "25000; o aço tem 7850"};
inline constexpr Text helpHelp{"this help", "esta ajuda"};
inline constexpr Text helpVersion{"the version", "a versão"};
inline constexpr Text helpExitCodes{
    "Exit codes: 0 fine, 1 problems in the model, 2 bad use, 3 input unreadable or no model, 4 "
    "output not written; of several models all are done, and the largest code counts",
    "Códigos de saída: 0 tudo certo, 1 problemas no modelo, 2 uso incorreto, 3 entrada ilegível ou "
    "que não é modelo, 4 saída não gravada; de vários modelos, todos são feitos e vale o maior "
    "código"};

// ---- languages
/// The names that variables and systems give a language: small letters without accents.
inline constexpr Text languageNames{"en eng english ingles c posix", "pt por portugues portuguese"};

// ---- manual
inline constexpr Text manualMade{"Made by exportifc --man; do not edit.",
                                 "Feito por exportifc --man; não edite."};
inline constexpr Text completionMade{
    "Completion of exportifc for bash; made by exportifc --completion, do not edit.",
    "Autocompletar de exportifc para bash; feito por exportifc --completion, não edite."};
inline constexpr Text manualName{"NAME", "NOME"};
inline constexpr Text manualTitle{"export structural models as IFC2X3 files",
                                  "exporta modelos de estruturas como arquivos IFC2X3"};
inline constexpr Text manualSynopsis{"SYNOPSIS", "SINOPSE"};
inline constexpr Text manualDescription{"DESCRIPTION", "DESCRIÇÃO"};
inline constexpr Text manualModels{
    "Models are JSON files (see docs/model-format.md), the batch text files that the host writes, "
    "SAF workbooks (docs/saf.md), and tables in a workbook or a folder of CSV files "
    "(docs/tables.md). What --json prints is described in docs/json-output.md.",
    "Os modelos são arquivos JSON (veja docs/model-format.md), os arquivos de texto batch que o "
    "programa hospedeiro grava, planilhas SAF (docs/saf.md) e tabelas em uma planilha ou em uma "
    "pasta de arquivos CSV (docs/tables.md). docs/json-output.md descreve o que --json mostra."};
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
inline constexpr Text wordSection{"WORD", "PALAVRA"};
inline constexpr Text wordRange{"RANGE", "FAIXA"};
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
inline constexpr Text useNoOptionBut{"{0} is no option; write {1}",
                                     "{0} não é uma opção; escreva {1}"};
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

}  // namespace exportifc::cli::texts
