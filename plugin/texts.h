// Every text the module shows or throws. Narrow texts are Windows-1252 bytes with static life,
// written with escapes so that no compiler's execution character set matters.
#pragma once

#include <cstddef>
#include <variant>

#include "plugin/user_interface.h"
#include "profiles/table_order.h"

namespace exportifc::texts {

inline constexpr const char* menuCaption = "Exportar IFC";

/// Thrown, as const char*, when the output file cannot be opened; the only text that leaves the
/// module. "Erro na criação do arquivo"
inline constexpr const char fileCreationFailed[] = "Erro na cria\xE7\xE3o do arquivo";

/// "Deseja exportar barras invisíveis no modelo?"
inline constexpr const char* askInvisibleBars = "Deseja exportar barras invis\xEDveis no modelo?";
/// "Importação de arquivo .IFC"
inline constexpr const char* askInvisibleBarsCaption = "Importa\xE7\xE3o de arquivo .IFC";

inline constexpr const char* frameAssembly = "Elementos_de_Portico";
inline constexpr const char* trussAssembly = "Elementos_de_Trelica";

// ---- Messages ----------------------------------------------------------------------------------

/// A box with an OK button, of narrow or of wide text.
struct NarrowBox {
  const char* text;  ///< null: the reason of the message
  const char* caption;
};
struct WideBox {
  const wchar_t* text;
  const wchar_t* caption;
};

/// How a message is shown.
struct MessageTexts {
  MessageId id;
  std::variant<NarrowBox, WideBox> box;
  const wchar_t* consoleLine = nullptr;  ///< printed after the box, the profile's name behind it
};

// clang-format off
inline constexpr MessageTexts messageTexts[] = {
    {MessageId::exportFailed, NarrowBox{nullptr, "UNHANDLED EXCEPTION"}},
    {MessageId::barWithoutRecord, NarrowBox{"Problema ao exportar Barra", "Erro"}},
    {MessageId::unknownProfile, WideBox{L"Perfil Desconhecido", L"Aviso"}, L"AVISO! Perfil desconhecido: "},
    // "Não foi possível criar o arquivo"
    {MessageId::cannotCreateFile, WideBox{L"N\u00E3o foi poss\u00EDvel criar o arquivo", L"Erro ao exportar arquivo"}},
    // "Nome de arquivo Inválido"
    {MessageId::noFileName, WideBox{L"Nome de arquivo Inv\u00E1lido", L"Erro ao exportar arquivo"}},
};
// clang-format on
static_assert(standsInOrder(messageTexts, &MessageTexts::id, MessageId::noFileName));

constexpr const MessageTexts& textsOf(MessageId id) {
  return messageTexts[static_cast<std::size_t>(id)];
}

}  // namespace exportifc::texts
