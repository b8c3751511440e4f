// Every text the module shows or throws. Narrow texts are Windows-1252 bytes with static life,
// written with escapes so that no compiler's execution character set matters.
#pragma once

namespace exportifc::texts {

inline constexpr const char* menuCaption = "Exportar IFC";

/// Thrown, as const char*, when the output file cannot be opened; the only text that leaves the
/// module. "Erro na criação do arquivo"
inline constexpr const char fileCreationFailed[] = "Erro na cria\xE7\xE3o do arquivo";

/// "Deseja exportar barras invisíveis no modelo?"
inline constexpr const char* askInvisibleBars = "Deseja exportar barras invis\xEDveis no modelo?";
/// "Importação de arquivo .IFC"
inline constexpr const char* askInvisibleBarsCaption = "Importa\xE7\xE3o de arquivo .IFC";

inline constexpr const char* unhandledExceptionCaption = "UNHANDLED EXCEPTION";

inline constexpr const char* barProblem = "Problema ao exportar Barra";
inline constexpr const char* barProblemCaption = "Erro";

/// "Nome de arquivo Inválido"
inline constexpr const wchar_t* invalidFileName = L"Nome de arquivo Inv\u00E1lido";
/// "Não foi possível criar o arquivo"
inline constexpr const wchar_t* cannotCreateFile = L"N\u00E3o foi poss\u00EDvel criar o arquivo";
inline constexpr const wchar_t* exportErrorCaption = L"Erro ao exportar arquivo";

inline constexpr const char* frameAssembly = "Elementos_de_Portico";
inline constexpr const char* trussAssembly = "Elementos_de_Trelica";

}  // namespace exportifc::texts
