#include "plugin/system_interface.h"

#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include <gtest/gtest.h>

#include "plugin/texts.h"

namespace exportifc {
namespace {

// The texts are written out here once more, by byte and by code point.

/// The message itself brings the text of a box that has none.
void expectNarrow(MessageId id, std::optional<std::string_view> text, std::string_view caption) {
  const auto* const box = std::get_if<texts::NarrowBox>(&texts::textsOf(id).box);
  ASSERT_NE(box, nullptr);
  EXPECT_EQ(box->text != nullptr ? std::optional<std::string_view>(box->text) : std::nullopt, text);
  EXPECT_EQ(box->caption, caption);
}

void expectWide(MessageId id, std::wstring_view text, std::wstring_view caption) {
  const auto* const box = std::get_if<texts::WideBox>(&texts::textsOf(id).box);
  ASSERT_NE(box, nullptr);
  EXPECT_EQ(box->text, text);
  EXPECT_EQ(box->caption, caption);
}

TEST(Texts, NarrowOnesAreWindows1252) {
  EXPECT_STREQ(texts::menuCaption, "Exportar IFC");
  EXPECT_STREQ(texts::fileCreationFailed, "Erro na cria\xE7\xE3o do arquivo");
  EXPECT_STREQ(texts::askInvisibleBars, "Deseja exportar barras invis\xEDveis no modelo?");
  EXPECT_STREQ(texts::askInvisibleBarsCaption, "Importa\xE7\xE3o de arquivo .IFC");
}

TEST(Texts, OfMessages) {
  expectNarrow(MessageId::exportFailed, std::nullopt, "UNHANDLED EXCEPTION");
  expectNarrow(MessageId::barWithoutRecord, "Problema ao exportar Barra", "Erro");
  expectWide(MessageId::unknownProfile, L"Perfil Desconhecido", L"Aviso");
  expectWide(MessageId::cannotCreateFile, L"N\u00E3o foi poss\u00EDvel criar o arquivo",
             L"Erro ao exportar arquivo");
  expectWide(MessageId::noFileName, L"Nome de arquivo Inv\u00E1lido", L"Erro ao exportar arquivo");
}

#if !defined(_WIN32)  // where messages are lines: the module's tests look at the boxes of Windows

struct Shown {
  std::string error;
  std::string output;
};

Shown shown(const Message& message) {
  testing::internal::CaptureStderr();
  testing::internal::CaptureStdout();
  systemInterface().show(message);
  Shown result{.error = testing::internal::GetCapturedStderr(), .output = {}};
  result.output = testing::internal::GetCapturedStdout();
  return result;
}

TEST(SystemInterface, ShowsTheTextOfAMessage) {
  const Shown narrow = shown({.id = MessageId::barWithoutRecord});
  EXPECT_EQ(narrow.error, "Erro: Problema ao exportar Barra\n");
  EXPECT_EQ(narrow.output, "");
  const Shown wide = shown({.id = MessageId::noFileName});
  EXPECT_EQ(wide.error, "Erro ao exportar arquivo: Nome de arquivo Inv\xC3\xA1lido\n");
  EXPECT_EQ(wide.output, "");
}

TEST(SystemInterface, ShowsTheReasonOfAFailure) {
  const Shown failure = shown({.id = MessageId::exportFailed, .reason = "mem\xF3ria"});
  EXPECT_EQ(failure.error, "UNHANDLED EXCEPTION: mem\xC3\xB3ria\n");
  EXPECT_EQ(failure.output, "");
}

TEST(SystemInterface, PrintsTheNameOfAnUnknownProfile) {
  const Shown unknown = shown({.id = MessageId::unknownProfile, .profileName = L"XPTO 1 2"});
  EXPECT_EQ(unknown.error, "Aviso: Perfil Desconhecido\n");
  EXPECT_EQ(unknown.output, "AVISO! Perfil desconhecido: XPTO 1 2\n");
}

#endif

}  // namespace
}  // namespace exportifc
