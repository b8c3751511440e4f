#include "library/formats/format.h"

#include <algorithm>
#include <set>
#include <sstream>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "library/formats/started_text.h"
#include "library/frame/model_error.h"
#include "tests/library/library_test.h"
#include "tests/support/sinks.h"

namespace exportifc {
namespace {

// ---- the table

TEST(Formats, EveryRowIsWhole) {
  std::set<std::string_view> extensions;
  std::set<ModelFormat> ids;
  for (const Format& format : formats()) {
    EXPECT_STRNE(say(format.name), "");
    EXPECT_EQ(format.extension.front(), '.');
    EXPECT_EQ(std::string(format.extension), [&] {
      std::string lowered(format.extension);
      std::transform(lowered.begin(), lowered.end(), lowered.begin(),
                     [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
      return lowered;
    }());
    // What is written has an extension of its own.
    EXPECT_TRUE(format.write == nullptr || extensions.insert(format.extension).second);
    EXPECT_TRUE(ids.insert(format.id).second);
    EXPECT_NE(format.recognises, nullptr);
    EXPECT_NE(format.read, nullptr);
    EXPECT_NE(format.losses, nullptr);
    EXPECT_EQ(format.write == nullptr, format.id == ModelFormat::saf);
    EXPECT_EQ(format.write == nullptr, !format.losses(Model{}).obstacle.empty());
    EXPECT_NE(format.locate, nullptr);
    EXPECT_EQ(&formatOf(format.id), &format);
  }
  EXPECT_EQ(ids.size(), 5U);
}

TEST(Formats, EachReadsWhatItWrites) {
  const Model model = test::soundModel();
  for (const Format& format : formats()) {
    if (format.write == nullptr) {
      continue;
    }
    test::Received received;
    test::MemorySink sink(received);
    format.write(model, sink);
    EXPECT_EQ(&recognisedFormat(received.bytes, format.extension), &format);
    EXPECT_EQ(&recognisedFormat(received.bytes, ""), &format);
    std::stringbuf buffer(received.bytes);
    const Model again = format.read(buffer);
    EXPECT_EQ(again.format, format.id);
    EXPECT_EQ(again.bars.size(), model.bars.size());
    EXPECT_EQ(again.announcedBars, 2);
  }
}

TEST(Formats, BatchTextTakesWhatTextIsLeft) {
  EXPECT_TRUE(formatOf(ModelFormat::batch).recognises("", ""));
  EXPECT_TRUE(formatOf(ModelFormat::batch).recognises("anything", ".xyz"));
}

TEST(Formats, JsonHoldsEverything) {
  Model model = test::soundModel();
  model.title = "a\nb";
  model.bars[0].type = 10;
  const Losses losses = formatOf(ModelFormat::json).losses(model);
  EXPECT_EQ(losses.obstacle, "");
  EXPECT_TRUE(losses.lines.empty());
}

// ---- recognised

ModelFormat recognised(std::string_view start, std::string_view extension = "") {
  return recognisedFormat(start, extension).id;
}

TEST(RecognisedFormat, LooksAtTheBeginning) {
  for (const std::string_view start : {"{", "[", " \t\r\n{", "\xEF\xBB\xBF{", "\xEF\xBB\xBF [1"}) {
    EXPECT_EQ(recognised(start), ModelFormat::json) << start;
    EXPECT_EQ(recognised(start, ".txt"), ModelFormat::json) << start;
  }
  for (const std::string_view start :
       {"2\r\n1\r\n", "x{", "\v{", "(", "\xEF\xBB\xBF\x32\n", "\n\n"}) {
    EXPECT_EQ(recognised(start), ModelFormat::batch) << start;
    EXPECT_EQ(recognised(start, ".txt"), ModelFormat::batch) << start;
  }
}

TEST(RecognisedFormat, TheNameMaySayWhatIsMeant) {
  EXPECT_EQ(recognised("unit: m", ".json"), ModelFormat::json);
  EXPECT_EQ(recognised("  ", ".json"), ModelFormat::json);
  EXPECT_EQ(recognised("unit: m", ".js"), ModelFormat::batch);
}

TEST(RecognisedFormat, NoNameMakesAWorkbookATextOfJson) {
  EXPECT_EQ(recognised("PK\x03\x04...[Content_Types].xml", ".json"), ModelFormat::tables);
  EXPECT_EQ(recognised("PK\x03\x04...nodes.csv", ".json"), ModelFormat::csv);
}

std::string refusal(std::string_view start) {
  try {
    recognisedFormat(start, ".json");
  } catch (const ModelError& error) {
    return std::string(error.problem().code) + ": " + error.what();
  }
  return "";
}

TEST(RecognisedFormat, RefusesWhatIsNoTextOfAModel) {
  EXPECT_EQ(refusal(""), "empty-file: the file is empty");
  EXPECT_EQ(refusal("\xEF\xBB\xBF"), "empty-file: the file is empty");
  const std::string utf16 = "utf-16: the text is in UTF-16; save it as UTF-8";
  EXPECT_EQ(refusal("\xFF\xFE{"), utf16);
  EXPECT_EQ(refusal("\xFE\xFF"), utf16);
  EXPECT_EQ(refusal(std::string_view("{\0\n\0", 4)), utf16);
  EXPECT_EQ(refusal(std::string_view("\0{", 2)), utf16);
  EXPECT_EQ(refusal(std::string_view("{\"a\0", 4)), utf16);
  EXPECT_EQ(refusal(std::string_view("{\"ab\0", 5)), "");
  EXPECT_EQ(refusal("ISO-10303-21;\r\n"),
            "exchange-file: an IFC file, not a model; exportifc view shows it");
  EXPECT_EQ(refusal("ISO-10303-21"), "");
  EXPECT_EQ(refusal("PK\3\4"),
            "exchange-file: a zip, not a model; exportifc view shows an .ifczip");
  EXPECT_THROW(recognisedFormat("node,x\n", ".csv"), ModelError);
  EXPECT_EQ(recognisedFormat("{}", ".csv").id, ModelFormat::json);
  EXPECT_EQ(refusal("PK\3"), "");
  EXPECT_EQ(
      refusal("\xD0\xCF\x11\xE0"),
      "old-workbook: an old workbook (.xls), or one with a password; save it as .xlsx, without a "
      "password");
}

// ---- a text whose beginning is looked at

TEST(StartedText, ShowsItsBeginningAndIsReadFromThere) {
  for (const std::size_t size : {0U, 1U, 16384U, 16385U, 100000U}) {
    std::string text;
    for (std::size_t i = 0; i < size; ++i) {
      text.push_back(static_cast<char>('a' + i % 23));
    }
    std::stringbuf buffer(text);
    StartedText started(buffer);
    EXPECT_EQ(started.start(), text.substr(0, 16384));
    std::string seen;
    started.watch([&](std::string_view piece) { seen += piece; });
    EXPECT_EQ(seen, started.start());
    std::string read(size / 2, '\0');
    EXPECT_EQ(started.sgetn(read.data(), static_cast<std::streamsize>(read.size())),
              static_cast<std::streamsize>(read.size()));
    EXPECT_EQ(read, text.substr(0, size / 2));
    started.drain();
    EXPECT_EQ(seen, text);
    EXPECT_EQ(started.sgetc(), StartedText::traits_type::eof());
  }
}

TEST(StartedText, IsReadToItsEndWithoutAWatcher) {
  const std::string text(50000, 'x');
  std::stringbuf buffer(text);
  StartedText started(buffer);
  std::string read(60000, '\0');
  read.resize(static_cast<std::size_t>(started.sgetn(read.data(), 60000)));
  EXPECT_EQ(read, text);
}

}  // namespace
}  // namespace exportifc
