#include "fuzz/expectation.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <map>
#include <set>

namespace exportifc::fuzz {

namespace {

// How many entities a profile takes, by family word.
const std::map<std::string, int>& profileEntities() {
  static const std::map<std::string, int> counts = [] {
    std::map<std::string, int> table;
    const auto add = [&](int entities, std::initializer_list<const char*> families) {
      for (const char* family : families) {
        table[family] = entities;
      }
    };
    add(4,
        {"ILAM",   "CS",      "][_1",   "][_2",   "[",      "[]_1",   "[]_2",   "UENR",   "UUE_1",
         "UUE_2",  "IENR_1",  "IENR_2", "CA_1",   "CA_2",   "BOX",    "L",      "LLM",    "LLM_EN",
         "LFF",    "LLAM_EN", "2L_1",   "2L_2",   "LL_1",   "LL_2",   "><_1",   "><_2",   "<>_1",
         "<>_2",   "LX_1",    "LX_2",   "LZ_1",   "LZ_2",   "TUBO",   "LLAM",   "2LLM_1", "2LLM_2",
         "LLLM_1", "LLLM_2",  "VVLM_1", "VVLM_2", "LVLM_1", "LVLM_2", "LXLM_1", "LXLM_2", "LZLM_1",
         "LZLM_2", "ULAM",    "UAP",    "UULM_1", "UULM_2", "2ULM_1", "2ULM_2", "TEE",    "RED",
         "FRED",   "W",       "HP",     "PS",     "VS",     "VSE",    "CSE",    "CVS",    "TW",
         "TS",     "WT",      "HE",     "IPE",    "EC",     "RET"});
    add(13 + 2, {"CART", "ICAR_1", "ICAR_2", "Z", "ZS", "ZI", "ZSI"});
    add(18 + 2, {"PC"});
    add(14 + 2, {"PSA"});
    return table;
  }();
  return counts;
}

constexpr int unknownEntities = 5 + 2;

bool isBuiltUp(const std::string& family) {
  static const std::set<std::string> families = {
      "][", "[]",   "UUE",  "IENR", "CA",   "2L",   "2L_ASSIMETRICO", "LL",   "><",   "<>",  "LX",
      "LZ", "ICAR", "2LLM", "LLLM", "VVLM", "LVLM", "LXLM",           "LZLM", "UULM", "2ULM"};
  return families.contains(family);
}

bool isReversed(const std::string& name) {
  static const std::set<std::string> names = {"2L_2", "2LLM_2", "LXLM_1", "LXLM_2",
                                              "LX_1", "LX_2",   "LZLM_1", "LZLM_2",
                                              "LZ_1", "LZ_2",   "ZS",     "ZI"};
  return names.contains(name);
}

std::string familyOf(const std::string& name) { return name.substr(0, name.find(' ')); }

/// The profiles that a bar's section gives: one, or two halves.
std::vector<std::string> profileNames(const std::string& name) {
  const std::string family = familyOf(name);
  return isBuiltUp(family) ? std::vector<std::string>{family + "_1", family + "_2"}
                           : std::vector<std::string>{name};
}

// A value outside 32 bits, or none, becomes the smallest integer.
std::int64_t truncated(float type) {
  const double whole = std::trunc(double{type});
  return whole >= -2147483648.0 && whole <= 2147483647.0 ? static_cast<std::int64_t>(whole)
                                                         : std::int64_t{-2147483648};
}

bool isWritten(const Model& model, const ModelBar& bar) {
  return bar.hasRecord && truncated(bar.type) != 10 && !(model.leaveOutHidden && bar.visible == 0);
}

std::string format(const char* pattern, double value) {
  if (std::isnan(value)) {
    return "nan";  // the C library also writes its sign
  }
  char text[400];
  const int size = std::snprintf(text, sizeof(text), pattern, value);
  return {text, static_cast<std::size_t>(size)};
}
std::string fixed(double value) { return format("%.5f", value); }
std::string general(double value) { return format("%.6g", value); }
std::string ref(int number) { return "#" + std::to_string(number); }

/// Follows a file from its start; everything after the first difference is ignored.
class Follower {
 public:
  explicit Follower(std::string_view file) : file_(file) {}

  /// This text, and nothing else, comes next.
  void text(std::string_view expected) {
    if (!following()) {
      return;
    }
    const std::string_view found = file_.substr(at_, expected.size());
    if (found != expected) {
      const auto mismatch =
          std::mismatch(found.begin(), found.end(), expected.begin(), expected.end());
      at_ += static_cast<std::size_t>(mismatch.first - found.begin());
      ended_ = at_ == file_.size();
      fault_ = "at byte " + std::to_string(at_) + " expected '" +
               std::string(mismatch.second, expected.end()) + "', found '" +
               std::string(file_.substr(at_, 60)) + "'";
      return;
    }
    at_ += expected.size();
  }

  /// A text that the model gave: a line feed in it is a line end of the file, and a byte from 0x80
  /// ends the file.
  void name(std::string_view given) {
    for (const char c : given) {
      if (static_cast<unsigned char>(c) >= 0x80) {
        end();
        return;
      }
      text(c == '\n' ? std::string_view("\r\n") : std::string_view(&c, 1));
    }
  }

  void globalId() {
    if (following()) {
      const std::size_t end = std::min(file_.find('\'', at_), file_.size());
      if (end - at_ == 22) {
        at_ = end;
      } else {
        ended_ = file_.size() - at_ < 22;
        fault_ = "no GlobalId at byte " + std::to_string(at_);
      }
    }
  }

  /// Any characters of a line up to this one, which is not consumed.
  void anythingUpTo(char stop) {
    while (following() && at_ < file_.size() && file_[at_] != stop && file_[at_] != '\r') {
      ++at_;
    }
  }

  /// The file must end here.
  void end() {
    if (following()) {
      complete_ = true;
      if (at_ != file_.size()) {
        fault_ = "the file goes on at byte " + std::to_string(at_) + ": '" +
                 std::string(file_.substr(at_, 60)) + "'";
      }
    }
  }

  bool following() const { return fault_.empty() && !complete_; }
  const std::string& fault() const { return fault_; }
  /// Whether the only difference is that the file ends too early.
  bool endedEarly() const { return ended_; }

 private:
  std::string_view file_;
  std::size_t at_ = 0;
  std::string fault_;
  bool complete_ = false;
  bool ended_ = false;
};

class Expectation {
 public:
  Expectation(Follower& file, const Model& model) : file_(file), model_(model) {}

  void follow() {
    file_.text(
        "ISO-10303-21;\r\n"
        "HEADER;\r\n"
        "FILE_DESCRIPTION(('ViewDefinition [CoordinationView]'), '2;1');\r\n"
        "FILE_NAME('', '2012-05-22T12:54:15', (''), (''), 'v1', 'Prototipo_vq5_ifc 0.1', '');\r\n"
        "FILE_SCHEMA(('IFC2X3'));\r\n"
        "ENDSEC;\r\n"
        "\r\n"
        "DATA;\r\n"
        "\r\n");
    constexpr int preambleLines = 5 + 69;
    for (int i = 0; i < preambleLines; ++i) {
      anyLine();
    }
    std::vector<int> frame;
    std::vector<int> truss;
    std::vector<int> storey;
    for (const ModelBar& bar : model_.bars) {
      if (!isWritten(model_, bar)) {
        continue;
      }
      const std::int64_t type = truncated(bar.type);
      const bool isFrame =
          type == 1 || type == 2 || type == 4 || type == 6 || type == 7 || type == 8;
      const bool isTruss = type == 3 || type == 9;
      std::vector<int>& group = isFrame ? frame : isTruss ? truss : storey;
      for (const std::string& profileName : profileNames(bar.name)) {
        const int profileNumber = profile(profileName);
        const bool half = profileName != bar.name;
        group.push_back(element(bar, half ? profileName : familyOf(bar.name), profileNumber));
        if (!file_.following()) {
          return;
        }
      }
    }
    const auto assembly = [&](const std::vector<int>& elements, const std::string& name) {
      if (elements.empty()) {
        return;
      }
      const int number = begin("IFCELEMENTASSEMBLY('");
      file_.globalId();
      line("', #5, '" + name + "', '', $, #111, $, $, $, .NOTDEFINED.)");
      begin("IFCRELAGGREGATES('");
      file_.globalId();
      line("', #5, '" + name + "', 'Assembly', " + ref(number) + ", (" + refs(elements) + "))");
      storey.push_back(number);
    };
    assembly(frame, "Elementos_de_Portico");
    assembly(truss, "Elementos_de_Trelica");
    begin("IFCRELCONTAINEDINSPATIALSTRUCTURE('");
    file_.globalId();
    line("', #5, 'Pavimento 1', '', (" + refs(storey) + "), #113)");
    file_.text("\r\nENDSEC;\r\nEND-ISO-10303-21;\r\n");
    file_.end();
  }

 private:
  static std::string refs(const std::vector<int>& numbers) {
    std::string text;
    for (const int number : numbers) {
      text += (text.empty() ? "" : ", ") + ref(number);
    }
    return text;
  }

  void anyLine() {
    file_.anythingUpTo('\r');
    file_.text("\r\n");
  }

  /// The start of an entity; returns its number.
  int begin(const std::string& text) {
    file_.text("#" + std::to_string(next_) + "= " + text);
    return next_++;
  }
  /// The end of an entity.
  void line(const std::string& text) { file_.text(text + ";\r\n"); }
  int entity(const std::string& text) {
    const int number = begin(text);
    line("");
    return number;
  }
  int anyEntity(const std::string& keyword) {
    const int number = begin(keyword);
    anyLine();
    return number;
  }

  int profile(const std::string& name) {
    const auto& table = profileEntities();
    const auto known = table.find(familyOf(name));
    const int entities = known == table.end() ? unknownEntities : known->second;
    constexpr int parametric = 4;
    if (entities == parametric) {
      const int point = anyEntity("IFCCARTESIANPOINT((");
      const int direction = anyEntity("IFCDIRECTION((");
      const int placement =
          entity("IFCAXIS2PLACEMENT2D(" + ref(point) + ", " + ref(direction) + ")");
      const int number = begin("IFC");
      file_.anythingUpTo('(');
      file_.text("(.AREA., '");
      file_.name(name);
      file_.text("', " + ref(placement) + ", ");
      anyLine();
      return number;
    }
    std::vector<int> points(static_cast<std::size_t>(entities - 2));
    for (int& point : points) {
      point = anyEntity("IFCCARTESIANPOINT((");
    }
    const int polyline = entity("IFCPOLYLINE((" + refs(points) + "))");
    const int number = begin("IFCARBITRARYCLOSEDPROFILEDEF(.AREA., '");
    file_.name(known == table.end() ? "UnknownProfile" : name);
    line("', " + ref(polyline) + ")");
    return number;
  }

  int element(const ModelBar& bar, const std::string& label, int profileNumber) {
    const double factor = model_.unitCode == 0 ? 1000.0 : model_.unitCode == 1 ? 10.0 : 1.0;
    std::array<double, 3> first{};
    std::array<double, 3> second{};
    for (std::size_t i = 0; i < 3; ++i) {
      first[i] = double{bar.start[i]} * factor;
      second[i] = double{bar.end[i]} * factor;
    }
    if (isReversed(bar.name)) {
      std::swap(first, second);
    }
    const float turns = static_cast<float>(bar.quarterTurns * 1.5707499980926514) + bar.angle;
    const double rotation = double{turns / 3.1415F} * 180.0;
    const std::string description = bar.name.size() < 2 ? " " : bar.name;
    const std::string name = label.empty() ? description : label;
    const double dx = second[0] - first[0];
    const double dy = second[1] - first[1];
    const double dz = second[2] - first[2];

    const auto list = [](const std::array<double, 3>& p, const char* separator,
                         std::string (*write)(double)) {
      return write(p[0]) + separator + write(p[1]) + separator + write(p[2]);
    };
    file_.text("\r\n/* IfcBeam (" + list(first, ",", general) + "), (" +
               list(second, ",", general) + ")\r\n");
    file_.text("angulo: " + general(rotation) + ", perfil: ");
    file_.name(bar.name);
    file_.text("\r\n */\r\n");

    const int axis = anyEntity("IFCDIRECTION((");
    const int reference = anyEntity("IFCDIRECTION((");
    const int location = entity("IFCCARTESIANPOINT((" + list(first, ", ", fixed) + "))");
    const int axes = entity("IFCAXIS2PLACEMENT3D(" + ref(location) + ", " + ref(axis) + ", " +
                            ref(reference) + ")");
    const int placement = entity("IFCLOCALPLACEMENT(#111, " + ref(axes) + ")");
    const int origin = entity("IFCCARTESIANPOINT((0., 0., 0.))");
    const int solidAxes = entity("IFCAXIS2PLACEMENT3D(" + ref(origin) + ", $, $)");
    const int solid = entity("IFCEXTRUDEDAREASOLID(" + ref(profileNumber) + ", " + ref(solidAxes) +
                             ", #19, " + fixed(std::sqrt(dy * dy + dx * dx + dz * dz)) + ")");
    const int shape =
        entity("IFCSHAPEREPRESENTATION(#88, 'Body', 'SweptSolid', (" + ref(solid) + "))");
    const int product = entity("IFCPRODUCTDEFINITIONSHAPE($, $, (" + ref(shape) + "))");
    const std::int64_t type = truncated(bar.type);
    const bool level = std::fabs(dz) <= 0.01;
    const bool column = std::fabs(dx) <= 0.01 && (type == 4 || type == 7);
    const int number = begin(level ? "IFCBEAM('" : column ? "IFCCOLUMN('" : "IFCMEMBER('");
    file_.globalId();
    file_.text("', #5, '");
    file_.name(name);
    file_.text("', '");
    file_.name(description);
    line("', $," + ref(placement) + ", " + ref(product) + ", '418198')");
    const int property = begin("IFCPROPERTYSINGLEVALUE('Reference', $, IFCIDENTIFIER('");
    file_.name(description);
    line("'), $)");
    const int set = begin("IFCPROPERTYSET('");
    file_.globalId();
    line("', #5,'Propriedades do Perfil', '', (" + ref(property) + "))");
    begin("IFCRELDEFINESBYPROPERTIES('");
    file_.globalId();
    line("', #5, 'Perfil', $, (" + ref(number) + "), " + ref(set) + ")");
    return number;
  }

  Follower& file_;
  const Model& model_;
  int next_ = 5006;
};

}  // namespace

std::string compareWithModel(std::string_view file, const Model& model) {
  Follower follower(file);
  Expectation(follower, model).follow();
  return follower.fault();
}

std::string compareStart(std::string_view file, const Model& model) {
  Follower follower(file);
  Expectation(follower, model).follow();
  return follower.endedEarly() ? std::string() : follower.fault();
}

Messages expectedMessages(const Model& model) {
  Messages messages;
  for (const ModelBar& bar : model.bars) {
    messages.barProblems += bar.hasRecord ? 0 : 1;
    if (isWritten(model, bar)) {
      for (const std::string& name : profileNames(bar.name)) {
        messages.unknownProfiles += profileEntities().contains(familyOf(name)) ? 0 : 1;
      }
    }
  }
  return messages;
}

bool hasPlainNames(const Model& model) {
  return std::all_of(model.bars.begin(), model.bars.end(), [&](const ModelBar& bar) {
    const auto isPlain = [](char c) { return c >= ' ' && c <= '~' && c != '\'' && c != '\\'; };
    return !isWritten(model, bar) ||
           (std::all_of(bar.name.begin(), bar.name.end(), isPlain) &&
            bar.name.find("*/") == std::string::npos && bar.name.find("/*") == std::string::npos);
  });
}

}  // namespace exportifc::fuzz
