#include "cli/output_format.h"

#include <functional>
#include <string>

#include <gtest/gtest.h>

#include "cli/failure.h"

namespace exportifc::cli {
namespace {

std::string failureOf(const std::function<void()>& work) {
  try {
    work();
  } catch (const Failure& failure) {
    EXPECT_EQ(failure.code(), exitBadUse);
    return failure.what();
  }
  return "";
}

std::string refusal(const std::string& output, const OutputKind& written) {
  return failureOf([&] { requireExtension(output, written); });
}

TEST(RequireExtension, TakesItsOwnAndStrangeOnes) {
  for (const std::string name :
       {"a.ifc", "A.IFC", "A.ifcZip", "a", "a.xyz", "a.ifc.zip", "-", ".json"}) {
    EXPECT_EQ(refusal(name, exchangeFileKind), "") << name;
  }
  for (const std::string name : {"a.html", "a.htm", "a.HTM", "a", "a.xhtml"}) {
    EXPECT_EQ(refusal(name, pageKind), "") << name;
  }
}

TEST(RequireExtension, RefusesThatOfAnotherKind) {
  EXPECT_EQ(refusal("a.json", exchangeFileKind),
            "a.json: an IFC file would be written, but .json is the extension of a JSON model: "
            "choose a name that ends in .ifc, or write exportifc convert for a JSON model");
  EXPECT_EQ(
      refusal("A.TXT", pageKind),
      "A.TXT: a page would be written, but .txt is the extension of a batch text file: choose "
      "a name that ends in .html, or write exportifc convert for a batch text file");
  EXPECT_EQ(
      refusal("a.htm", exchangeFileKind),
      "a.htm: an IFC file would be written, but .htm is the extension of a page: choose a name "
      "that ends in .ifc, or write exportifc view for a page");
  EXPECT_EQ(
      refusal("a.ifc", pageKind),
      "a.ifc: a page would be written, but .ifc is the extension of an IFC file: choose a name "
      "that ends in .html, or write exportifc export for an IFC file");
}

const Format& json = formatOf(ModelFormat::json);
const Format& batch = formatOf(ModelFormat::batch);

TEST(ConvertedFormat, IsThatOfTheOutputsName) {
  EXPECT_EQ(convertedFormat("a.json", json, "a.txt").id, ModelFormat::batch);
  EXPECT_EQ(convertedFormat("a.txt", batch, "a.JSON").id, ModelFormat::json);
}

TEST(ConvertedFormat, IsTheOtherWhenTheNameSaysNothing) {
  for (const std::string name : {"a", "-", "a.xyz"}) {
    EXPECT_EQ(convertedFormat("a.json", json, name).id, ModelFormat::batch) << name;
    EXPECT_EQ(convertedFormat("a.txt", batch, name).id, ModelFormat::json) << name;
  }
}

TEST(ConvertedFormat, IsAnother) {
  EXPECT_EQ(failureOf([] { convertedFormat("a.json", json, "b.json"); }),
            "b.json: a.json is a JSON model already: choose a name that ends in one of .txt, "
            ".xlsx, .zip");
  EXPECT_EQ(failureOf([] { convertedFormat("-", batch, "b.txt"); }),
            "b.txt: standard input is a batch text file already: choose a name that ends in one of "
            ".json, .xlsx, .zip");
}

TEST(ConvertedFormat, IsThatOfAModel) {
  EXPECT_EQ(
      failureOf([] { convertedFormat("a.json", json, "b.ifc"); }),
      "b.ifc: a batch text file would be written, but .ifc is the extension of an IFC file: "
      "choose a name that ends in .txt, .xlsx, .zip, or write exportifc export for an IFC file");
}

TEST(ConvertedFormat, IsNoSingleTable) {
  EXPECT_EQ(failureOf([] { convertedFormat("a.json", json, "b/c.CSV"); }),
            "b/c.CSV: tables are several CSV files; write -o b/c/ for a folder of them, or "
            "exportifc takeoff -o b/c.CSV for the lists of a take-off");
}

TEST(ConvertedFormat, OfSafIsNeverSaf) {
  const Format& saf = formatOf(ModelFormat::saf);
  EXPECT_EQ(convertedFormat("a.xlsx", saf, "b.xlsx").id, ModelFormat::tables);
  EXPECT_EQ(convertedFormat("a.xlsx", saf, "-").id, ModelFormat::json);
}

}  // namespace
}  // namespace exportifc::cli
