// What the module asks of Windows, looked at where it asks: some of its imports lead here.
#include <algorithm>
#include <array>
#include <clocale>
#include <cstring>
#include <functional>
#include <map>
#include <optional>

#include <windows.h>
// windows.h first.
#include <commdlg.h>
#include <objbase.h>

#include "tests/module/module_test.h"
#include "tests/module/replaced_import.h"

namespace exportifc::module_tests {
namespace {

namespace fs = std::filesystem;

using testing::Each;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

/// What a test does in the place of the system's functions. Plain functions reach it here.
struct Calls {
  std::function<BOOL(OPENFILENAMEW&)> saveDialog;
  std::function<int(UINT kind)> narrowBox;
  std::function<HRESULT(GUID&)> newGuid;
  std::function<void(const std::wstring& path)> beforeOpening;
  std::function<void(const std::string& line)> beforeWriting;
};

Calls* calls = nullptr;

BOOL WINAPI saveDialog(OPENFILENAMEW* dialog) { return calls->saveDialog(*dialog); }

int WINAPI narrowBox(HWND /*owner*/, const char* /*text*/, const char* /*caption*/, UINT kind) {
  return calls->narrowBox(kind);
}

HRESULT WINAPI newGuid(GUID* guid) { return calls->newGuid(*guid); }

HANDLE WINAPI createFile(const wchar_t* path, DWORD access, DWORD share,
                         SECURITY_ATTRIBUTES* security, DWORD disposition, DWORD flags,
                         HANDLE likeness) {
  calls->beforeOpening(path);
  return CreateFileW(path, access, share, security, disposition, flags, likeness);
}

BOOL WINAPI writeFile(HANDLE file, const void* bytes, DWORD size, DWORD* written,
                      OVERLAPPED* overlapped) {
  calls->beforeWriting({static_cast<const char*>(bytes), size});
  return WriteFile(file, bytes, size, written, overlapped);
}

constexpr std::array categories = {LC_COLLATE, LC_CTYPE, LC_MONETARY, LC_NUMERIC, LC_TIME};

/// The runtime's locale, category by category.
std::vector<std::string> locale() {
  std::vector<std::string> names;
  for (const int category : categories) {
    names.emplace_back(std::setlocale(category, nullptr));
  }
  return names;
}

class SystemCalls : public ModuleTest {
 protected:
  SystemCalls() { calls = &replaced; }
  ~SystemCalls() override { calls = nullptr; }

  /// A batch export of one bar.
  std::int64_t exportOneBar() {
    test::writeFile(file("modelo.txt"), batchModel({BarText{}}));
    return exportFile("modelo.txt");
  }

  Calls replaced;
};

// ---- The save dialog ---------------------------------------------------------------------------

TEST_F(SystemCalls, TheSaveDialogIsAskedForThus) {
  const ReplacedImport dialog(*module, "GetSaveFileNameW", &saveDialog);
  int asked = 0;
  replaced.saveDialog = [&](OPENFILENAMEW& dialog) {
    ++asked;
    EXPECT_EQ(dialog.lStructSize, 152U);
    const std::wstring filter(dialog.lpstrFilter, 20);
    EXPECT_EQ(filter, std::wstring(L"Arquivos IFC\0*.ifc\0\0", 20));
    EXPECT_EQ(dialog.nMaxFile, 1024U);
    EXPECT_EQ(std::count(dialog.lpstrFile, dialog.lpstrFile + 1024, L'\0'), 1024);
    EXPECT_EQ(dialog.Flags, 0x1800U);
    EXPECT_STREQ(dialog.lpstrDefExt, L".ifc");
    OPENFILENAMEW rest = dialog;
    rest.lStructSize = rest.nMaxFile = rest.Flags = 0;
    rest.lpstrFilter = rest.lpstrDefExt = nullptr;
    rest.lpstrFile = nullptr;
    const OPENFILENAMEW zero{};
    EXPECT_EQ(std::memcmp(&rest, &zero, sizeof(zero)), 0) << "something else is asked for";
    const std::wstring left = (file("") / "quadro.ifc").wstring();  // by a person who then cancels
    std::copy(left.begin(), left.end(), dialog.lpstrFile);
    return FALSE;
  };
  EXPECT_EQ(execute({}), -1);
  EXPECT_EQ(asked, 1);
  EXPECT_THAT(listing(), IsEmpty());
}

TEST_F(SystemCalls, TheSaveDialogMayAnswerWithALongPath) {
  // Longer than most paths may be, shorter than the room for it.
  const ReplacedImport dialog(*module, "GetSaveFileNameW", &saveDialog);
  fs::path folder = anyLength(file("pasta"));
  while (folder.wstring().size() < 600) {
    folder /= std::wstring(100, L'p');
  }
  fs::create_directories(folder);
  const fs::path chosen = folder / L"quadro.ifc";
  replaced.saveDialog = [&](OPENFILENAMEW& dialog) {
    const std::wstring path = chosen.wstring();
    EXPECT_LT(path.size(), dialog.nMaxFile);
    std::copy(path.begin(), path.end(), dialog.lpstrFile);
    return TRUE;
  };
  host.bars.resize(1);
  EXPECT_EQ(execute({answersYes()}), 1);
  EXPECT_EQ(record().outputPath, narrowBytes(chosen));
  fs::remove(chosen);
  for (; folder.filename() != file("").parent_path().filename(); folder = folder.parent_path()) {
    fs::remove(folder);
  }
}

// ---- The question ------------------------------------------------------------------------------

TEST_F(SystemCalls, AQuestionThatCannotBeShownLeavesNoBarOut) {
  const ReplacedImport box(*module, "MessageBoxA", &narrowBox);
  replaced.narrowBox = [](UINT kind) {
    EXPECT_EQ(kind, UINT{MB_YESNO});
    return 0;  // no memory for a box
  };
  host.bars = {{.section = "W 200"}, {.section = "IPE 1", .visible = 0}};
  EXPECT_EQ(execute({typesFileName(typed("quadro.ifc"))}), 1);
  EXPECT_EQ(IfcText(file("quadro.ifc")).elements().size(), 2U);
}

// ---- The runtime's locale ----------------------------------------------------------------------

TEST_F(SystemCalls, EveryCategoryOfTheLocaleIsChanged) {
  EXPECT_EQ(exportOneBar(), 1);
  EXPECT_THAT(locale(), Each(HasSubstr("Portuguese")));
}

TEST_F(SystemCalls, TheLocaleIsChangedOnceTheFileIsOpenAndBeforeItIsWritten) {
  const ReplacedImport opening(*module, "CreateFileW", &createFile);
  const ReplacedImport writing(*module, "WriteFile", &writeFile);
  std::vector<std::string> atOpening;
  std::vector<std::string> atFirstLine;
  replaced.beforeOpening = [&](const std::wstring&) { atOpening = locale(); };
  replaced.beforeWriting = [&](const std::string&) {
    if (atFirstLine.empty()) {
      atFirstLine = locale();
    }
  };
  EXPECT_EQ(exportOneBar(), 1);
  EXPECT_THAT(atOpening, AllOf(Not(IsEmpty()), Each("C")));
  EXPECT_THAT(atFirstLine, AllOf(Not(IsEmpty()), Each(HasSubstr("Portuguese"))));
}

TEST_F(SystemCalls, WithoutAnOutputTheLocaleStays) {
  const std::string path = narrowBytes(file("nenhuma") / "modelo.txt");
  EXPECT_NE(thrownText({}, [&] { module->plugInExportIfcFile(path.c_str()); }), "");
  EXPECT_THAT(locale(), Each("C"));
}

// ---- The path that hosts see -------------------------------------------------------------------

TEST_F(SystemCalls, TheOutputPathIsToldBetweenThePreambleAndTheModel) {
  const ReplacedImport writing(*module, "WriteFile", &writeFile);
  std::string before;
  std::string after;
  replaced.beforeWriting = [&](const std::string& line) {
    (record().outputPath[0] == '\0' ? before : after) += line;
  };
  EXPECT_EQ(exportOneBar(), 1);
  EXPECT_TRUE(before.ends_with("$, $, #104, (#113));\r\n")) << before;
  EXPECT_TRUE(after.starts_with("#5006= ")) << after.substr(0, 100);
}

// ---- Who else may have the files ---------------------------------------------------------------

/// Somebody else who has a file open.
class Holder {
 public:
  Holder(const fs::path& path, DWORD access, DWORD share, DWORD disposition = OPEN_EXISTING)
      : file_(CreateFileW(path.c_str(), access, share, nullptr, disposition, FILE_ATTRIBUTE_NORMAL,
                          nullptr)) {}
  Holder(const Holder&) = delete;
  Holder& operator=(const Holder&) = delete;
  ~Holder() {
    if (holds()) {
      CloseHandle(file_);
    }
  }

  [[nodiscard]] bool holds() const { return file_ != INVALID_HANDLE_VALUE; }

 private:
  HANDLE file_;
};

constexpr DWORD shareReadWrite = FILE_SHARE_READ | FILE_SHARE_WRITE;
constexpr DWORD shareAll = shareReadWrite | FILE_SHARE_DELETE;

TEST_F(SystemCalls, OthersMayReadAndWriteTheOutputDuringAnExport) {
  host.bars.resize(1);
  int looked = 0;
  host.before = [&](const Query& query) {
    if (query.code != EXPORTIFC_BAR_TYPE) {
      return;
    }
    ++looked;
    EXPECT_TRUE(Holder(file("quadro.ifc"), GENERIC_READ, shareAll).holds());
    EXPECT_TRUE(Holder(file("quadro.ifc"), GENERIC_WRITE, shareAll).holds());
    EXPECT_FALSE(Holder(file("quadro.ifc"), DELETE, shareAll).holds());
    EXPECT_FALSE(Holder(file("quadro.ifc"), GENERIC_READ, FILE_SHARE_READ).holds())
        << "the module writes it";
    EXPECT_TRUE(Holder(file("quadro.ifc"), GENERIC_READ, FILE_SHARE_WRITE).holds())
        << "and does not read it";
  };
  exported("quadro.ifc");
  EXPECT_EQ(looked, 1);
}

TEST_F(SystemCalls, AnOutputThatOthersHoldIsTakenWhenTheyShareWriting) {
  struct Case {
    DWORD access;
    DWORD share;
    bool taken;
  };
  for (const Case& held : {Case{GENERIC_READ, 0, false},
                           {GENERIC_READ, FILE_SHARE_READ, false},
                           {GENERIC_READ, FILE_SHARE_WRITE, true},
                           {GENERIC_READ, shareReadWrite, true},
                           {GENERIC_WRITE, shareAll, true},
                           {DELETE, shareAll, false}}) {
    SCOPED_TRACE(testing::Message() << std::hex << held.access << ", shares " << held.share);
    test::writeFile(file("modelo.txt"), batchModel({BarText{}}));
    {
      const Holder holder(file("modelo.txttemp"), held.access, held.share, OPEN_ALWAYS);
      ASSERT_TRUE(holder.holds());
      const std::string path = narrowBytes(file("modelo.txt"));
      const std::string thrown = thrownText({}, [&] { module->plugInExportIfcFile(path.c_str()); });
      EXPECT_EQ(thrown.empty(), held.taken);
    }
    if (!held.taken) {
      EXPECT_EQ(readFile(file("modelo.txt")), batchModel({BarText{}}));
    }
    if (held.taken && held.share != shareAll) {
      EXPECT_THAT(listing(), ElementsAre("modelo.txttemp")) << "it cannot be renamed";
      EXPECT_EQ(IfcText(file("modelo.txttemp")).elements().size(), 1U);
    }
    for (const std::string& name : listing()) {
      fs::remove(file(name));
    }
  }
}

TEST_F(SystemCalls, AModelThatOthersHoldIsReadWhenTheyShareReading) {
  struct Case {
    DWORD access;
    DWORD share;
    bool read;
  };
  const std::string model = batchModel({BarText{}});
  for (const Case& held : {Case{GENERIC_READ, 0, false},
                           {GENERIC_READ, FILE_SHARE_READ, true},
                           {GENERIC_READ, FILE_SHARE_WRITE, false},
                           {GENERIC_READ, shareReadWrite, true},
                           {GENERIC_WRITE, shareReadWrite, true},
                           {DELETE, shareReadWrite, false}}) {
    SCOPED_TRACE(testing::Message() << std::hex << held.access << ", shares " << held.share);
    test::writeFile(file("modelo.txt"), model);
    {
      const Holder holder(file("modelo.txt"), held.access, held.share);
      ASSERT_TRUE(holder.holds());
      EXPECT_EQ(exportFile("modelo.txt"), 1);
    }
    // It can be neither deleted nor replaced: the output stays beside it.
    EXPECT_THAT(listing(), ElementsAre("modelo.txt", "modelo.txttemp"));
    EXPECT_EQ(readFile(file("modelo.txt")), model);
    const IfcText ifc(file("modelo.txttemp"));
    EXPECT_TRUE(ifc.isComplete());
    EXPECT_EQ(ifc.elements().size(), held.read ? 1U : 0U);
    fs::remove(file("modelo.txttemp"));
  }
}

TEST_F(SystemCalls, TheModelIsClosedBeforeTheStoreyIsWritten) {
  const ReplacedImport writing(*module, "WriteFile", &writeFile);
  std::map<std::string, bool> closed;  // at the entity with this keyword
  replaced.beforeWriting = [&](const std::string& line) {
    for (const char* const keyword : {"IFCRELDEFINESBYPROPERTIES", "IFCRELCONTAINED"}) {
      if (line.find(keyword) != std::string::npos) {
        closed[keyword] = Holder(file("modelo.txt"), GENERIC_READ, 0).holds();
        // While it is open, others may have it as well.
        EXPECT_TRUE(Holder(file("modelo.txt"), GENERIC_READ, shareAll).holds()) << keyword;
        EXPECT_TRUE(Holder(file("modelo.txt"), GENERIC_WRITE, shareAll).holds()) << keyword;
      }
    }
  };
  EXPECT_EQ(exportOneBar(), 1);
  EXPECT_EQ(closed, (std::map<std::string, bool>{{"IFCRELDEFINESBYPROPERTIES", false},
                                                 {"IFCRELCONTAINED", true}}));
}

// ---- Identifiers -------------------------------------------------------------------------------

/// The GlobalIds of the generated entities, in the order of the file, with their keywords.
std::vector<std::string> globalIds(const IfcText& ifc) {
  std::vector<std::string> ids;
  for (const Entity& entity : ifc.entities) {
    if (entity.arguments.starts_with('\'') && entity.keyword != "IFCPROPERTYSINGLEVALUE") {
      ids.push_back(entity.keyword + " " +
                    entity.arguments.substr(1, entity.arguments.find('\'', 1) - 1));
    }
  }
  return ids;
}

TEST_F(SystemCalls, IdentifiersAreMadeOneByOneAsTheirLinesAreWritten) {
  const ReplacedImport guids(*module, "CoCreateGuid", &newGuid);
  std::vector<std::string> linesBefore;  // the last line in the file when each was made
  replaced.newGuid = [&](GUID& guid) {
    const std::string bytes = readFile(file("quadro.ifc"));
    const std::size_t start = bytes.rfind('\n', bytes.size() - 2) + 1;
    const std::string line = bytes.substr(start, bytes.size() - start - 2);
    linesBefore.push_back(line.substr(line.find(' ') + 1, line.find('(') - line.find(' ') - 1));
    guid = {};
    guid.Data4[7] = static_cast<unsigned char>(linesBefore.size());
    return S_OK;
  };
  host.bars = {{.section = "W 200", .type = 1}, {.section = "RED 16", .type = 3}};
  const IfcText ifc = exported("quadro.ifc");
  const std::string zeros(20, '0');
  EXPECT_THAT(
      globalIds(ifc),
      ElementsAre("IFCBEAM " + zeros + "01", "IFCPROPERTYSET " + zeros + "02",
                  "IFCRELDEFINESBYPROPERTIES " + zeros + "03", "IFCBEAM " + zeros + "04",
                  "IFCPROPERTYSET " + zeros + "05", "IFCRELDEFINESBYPROPERTIES " + zeros + "06",
                  "IFCELEMENTASSEMBLY " + zeros + "07", "IFCRELAGGREGATES " + zeros + "08",
                  "IFCELEMENTASSEMBLY " + zeros + "09", "IFCRELAGGREGATES " + zeros + "0A",
                  "IFCRELCONTAINEDINSPATIALSTRUCTURE " + zeros + "0B"));
  const char* const beforeElement = "IFCPRODUCTDEFINITIONSHAPE";
  const char* const beforeSet = "IFCPROPERTYSINGLEVALUE";
  EXPECT_THAT(linesBefore,
              ElementsAre(beforeElement, beforeSet, "IFCPROPERTYSET", beforeElement, beforeSet,
                          "IFCPROPERTYSET", "IFCRELDEFINESBYPROPERTIES", "IFCELEMENTASSEMBLY",
                          "IFCRELAGGREGATES", "IFCELEMENTASSEMBLY", "IFCRELAGGREGATES"));
}

TEST_F(SystemCalls, ASystemWithoutGuidsGivesEmptyIdentifiers) {
  const ReplacedImport guids(*module, "CoCreateGuid", &newGuid);
  replaced.newGuid = [](GUID&) { return E_FAIL; };
  host.bars = {{.section = "W 200", .type = 1}};
  const IfcText ifc = exported("quadro.ifc");
  EXPECT_THAT(globalIds(ifc),
              ElementsAre("IFCBEAM ", "IFCPROPERTYSET ", "IFCRELDEFINESBYPROPERTIES ",
                          "IFCELEMENTASSEMBLY ", "IFCRELAGGREGATES ",
                          "IFCRELCONTAINEDINSPATIALSTRUCTURE "));
}

// ---- The host's records ------------------------------------------------------------------------

TEST_F(SystemCalls, NothingOfARecordIsReadOnceItsFirstBoxIsOpen) {
  // Both halves are unknown, so each has a box.
  host.bars = {{.section = "2L_ASSIMETRICO 50", .quarterTurns = 1}};
  Dialog first = box("Perfil Desconhecido", "Aviso");
  first.meanwhile = [&] { host.dropRecords(); };
  EXPECT_EQ(execute({typesFileName(typed("quadro.ifc")), answersYes(), first,
                     box("Perfil Desconhecido", "Aviso")}),
            1);
  const std::string bytes = readFile(file("quadro.ifc"));
  const std::size_t firstHalf = bytes.find("angulo: 90, perfil: 2L_ASSIMETRICO 50\r\n");
  ASSERT_NE(firstHalf, std::string::npos);
  EXPECT_NE(bytes.find("angulo: 90, perfil: 2L_ASSIMETRICO 50\r\n", firstHalf + 1),
            std::string::npos);
}

}  // namespace
}  // namespace exportifc::module_tests
