#include "library/formats/json_model.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <functional>
#include <istream>
#include <limits>
#include <span>
#include <streambuf>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include <nlohmann/json.hpp>

#include "library/formats/json_faults.h"
#include "library/formats/json_keys.h"
#include "library/formats/json_places.h"
#include "library/frame/model_error.h"
#include "library/frame/pointer.h"
#include "library/sections/rolled_sections.h"
#include "library/text/messages.h"
#include "library/text/nearest.h"
#include "library/text/text_encoding.h"
#include "model/batch_source.h"

namespace exportifc {

namespace {

/// A value that is neither object nor array.
struct Scalar {
  enum class Kind : std::uint8_t { null, boolean, integer, real, text };
  Kind kind = Kind::null;
  bool boolean = false;
  std::int64_t integer = 0;
  double real = 0.0;        // also of an integer
  std::string_view text{};  // of a text its content, of a real its digits

  bool isNumber() const { return kind == Kind::integer || kind == Kind::real; }
};

/// The value as the file shows it, shortened.
std::string shown(const Scalar& value) {
  switch (value.kind) {
    case Scalar::Kind::null: return "null";
    case Scalar::Kind::boolean: return value.boolean ? "true" : "false";
    case Scalar::Kind::integer: return std::to_string(value.integer);
    case Scalar::Kind::real: return std::string(value.text);
    case Scalar::Kind::text: break;
  }
  return '"' + excerpt(value.text) + '"';
}

// Keys of each kind of object; the first `required` of them must be there.
struct Keys {
  std::span<const std::string_view> names;
  std::size_t required;
};
constexpr Keys modelKeys{modelKeyNames, 4};
constexpr Keys materialKeys{materialKeyNames, 0};
constexpr Keys sectionKeys{sectionKeyNames, 0};  // a text, or a name of the catalogue
constexpr Keys barKeys{barKeyNames, 2};

/// The bit of a section's key.
constexpr unsigned bitOf(std::string_view key) {
  return 1U << static_cast<unsigned>(
             std::find(std::begin(sectionKeyNames), std::end(sectionKeyNames), key) -
             std::begin(sectionKeyNames));
}

bool isModelKey(std::string_view name) {
  return std::find(modelKeys.names.begin(), modelKeys.names.end(), name) != modelKeys.names.end();
}

/// "; did you mean column?", or nothing.
std::string guess(const std::string& near) {
  return near.empty() ? near : say(texts::didYouMean, {near});
}

/// Lets a table of strings be searched for a view without a copy.
struct TextHash {
  using is_transparent = void;
  std::size_t operator()(std::string_view text) const {
    return std::hash<std::string_view>{}(text);
  }
};

using Indexes = std::unordered_map<std::string, std::int32_t, TextHash, std::equal_to<>>;

/// Builds the model from the parser's events.
class ModelBuilder final : public nlohmann::json_sax<nlohmann::json> {
 public:
  explicit ModelBuilder(JsonText& text) : text_(text) {}

  Model take() { return std::move(model_); }

  bool null() override { return scalar({}); }
  bool boolean(bool value) override {
    return scalar({.kind = Scalar::Kind::boolean, .boolean = value});
  }
  bool number_integer(number_integer_t value) override {
    return scalar(
        {.kind = Scalar::Kind::integer, .integer = value, .real = static_cast<double>(value)});
  }
  bool number_unsigned(number_unsigned_t value) override {
    constexpr auto largest = std::numeric_limits<std::int64_t>::max();
    return scalar(
        {.kind = Scalar::Kind::integer,
         .integer = value > number_unsigned_t{largest} ? largest : static_cast<std::int64_t>(value),
         .real = static_cast<double>(value)});
  }
  bool number_float(number_float_t value, const string_t& digits) override {
    return scalar({.kind = Scalar::Kind::real, .real = value, .text = digits});
  }
  bool string(string_t& value) override {
    return scalar({.kind = Scalar::Kind::text, .text = value});
  }
  bool binary(binary_t& /*value*/) override { return false; }

  bool start_object(std::size_t /*size*/) override;
  bool key(string_t& name) override;
  bool end_object() override;
  bool start_array(std::size_t /*size*/) override;
  bool end_array() override;
  bool parse_error(std::size_t at, const std::string& token,
                   const nlohmann::json::exception& error) override;

 private:
  // Where in the model the parser is; each row of the format has one.
  enum class In : std::uint8_t {
    file,
    model,
    nodes,
    node,
    materials,
    material,
    sections,
    section,
    dims,
    bars,
    bar,
    barNodes
  };

  /// Lists that hold no text.
  static bool isList(In in) {
    return in == In::nodes || in == In::node || in == In::dims || in == In::bars ||
           in == In::barNodes;
  }

  bool scalar(const Scalar& value);
  void modelValue(const Scalar& value);
  void materialValue(const Scalar& value);
  void sectionValue(const Scalar& value);
  void barValue(const Scalar& value);

  void enterObject(const Keys* keys) {
    keys_ = keys;
    seen_ = 0;
  }
  std::string pointer() const;
  /// Ends the reading: the value at hand, and what is allowed.
  [[noreturn]] void fail(const std::string& message, Problem facts = {}) const;
  [[noreturn]] void failValue(const Scalar& value, const std::string& near = {}) const {
    const std::string allowed = allowedHere();
    fail(say(texts::valueNotAllowed, {shown(value), allowed}) + guess(near),
         {.value = shown(value), .allowed = allowed, .suggestion = near});
  }
  /// What the text around the parser says of its fault comes first: a bracket that is missing looks
  /// to the parser like a value in the wrong place.
  void failByText() const {
    if (auto fault = nameFault(text_.surroundings())) {
      throw ModelError(*std::move(fault));
    }
  }
  [[noreturn]] void failStructure(const Text& message) const {
    failByText();
    fail(fill(message, {allowedHere()}), {.allowed = allowedHere()});
  }
  [[noreturn]] void failUnknownKey(const std::string& name);
  std::string allowedHere() const;
  /// As `fail`, of the list that the value at hand stands in.
  [[noreturn]] void failAround(In outer, const std::string& message) {
    in_ = outer;
    fail(message);
  }
  float number(const Scalar& value) const;
  std::int32_t integer(const Scalar& value) const;
  std::uint8_t barType(const Scalar& value) const;
  std::string_view textOf(const Scalar& value) const;
  std::int32_t sectionIndex(std::string_view name);
  std::int32_t materialIndex(std::string_view name);
  std::int32_t layerIndex(std::string_view name);
  ModelSection& sectionHere() { return model_.sections[static_cast<std::size_t>(section_)]; }
  ModelMaterial& materialHere() { return model_.materials[static_cast<std::size_t>(material_)]; }
  bool isDefined(std::string_view name) const;
  void takeFromCatalogue(std::string_view name);
  void keepSection();
  void keepBar();

  JsonText& text_;
  Model model_;
  In in_ = In::file;
  const Keys* keys_ = nullptr;
  unsigned seen_ = 0;         // keys of the object at hand, one bit each
  unsigned seenOfModel_ = 0;  // kept while an inner object is read
  std::string_view key_;      // last key of the object at hand: of a table, or ownKey_
  std::string ownKey_;        // one that the model's author chose
  std::size_t item_ = 0;      // index in the inner array: coordinates, dimensions, ends
  std::array<float, 3> node_{};
  ModelBar bar_;
  std::string barName_;
  std::int32_t barLayer_ = -1;
  std::int32_t section_ = 0;
  std::int32_t material_ = 0;
  bool dimsGiven_ = false;
  Indexes sectionIndexes_;
  Indexes materialIndexes_;
  Indexes layerIndexes_;
};

std::string ModelBuilder::pointer() const {
  const auto nodeText = [&] { return "/nodes/" + std::to_string(model_.nodes.size()); };
  const auto barText = [&] { return "/bars/" + std::to_string(model_.bars.size()); };
  const auto sectionText = [&] {
    return "/sections/" + pointerPiece(model_.sections[static_cast<std::size_t>(section_)].name);
  };
  const auto keyText = [&] { return key_.empty() ? std::string() : "/" + pointerPiece(key_); };
  switch (in_) {
    case In::file: return "";
    case In::model: return keyText();
    case In::nodes: return nodeText();
    case In::node: return nodeText() + "/" + std::to_string(item_);
    case In::materials: return "/materials" + keyText();
    case In::material:
      return "/materials/" +
             pointerPiece(model_.materials[static_cast<std::size_t>(material_)].name) + keyText();
    case In::sections: return "/sections" + keyText();
    case In::section: return sectionText() + keyText();
    case In::dims: return sectionText() + "/dims/" + std::to_string(item_);
    case In::bars: return barText();
    case In::bar: return barText() + keyText();
    case In::barNodes: return barText() + "/nodes/" + std::to_string(item_);
  }
  return "";
}

void ModelBuilder::fail(const std::string& message, Problem facts) const {
  facts.code = "unreadable";
  facts.message = message;
  facts.pointer = pointer();
  throw ModelError(std::move(facts), text_.place());
}

/// What may stand where the parser is, in place of a value of another kind.
std::string ModelBuilder::allowedHere() const {
  struct Row {
    In in;
    std::string_view key;  // empty: any
    const Text& allowed;
  };
  static constexpr Row rows[] = {
      {In::file, "", texts::allowedModel},
      {In::model, "nodes", texts::allowedArray},
      {In::model, "bars", texts::allowedArray},
      {In::model, "sections", texts::allowedSections},
      {In::model, "materials", texts::allowedMaterials},
      {In::model, "", texts::allowedText},
      {In::nodes, "", texts::allowedNode},
      {In::node, "", texts::allowedNumber},
      {In::materials, "", texts::allowedMaterial},
      {In::material, "", texts::allowedDensity},
      {In::sections, "", texts::allowedSection},
      {In::section, "dims", texts::allowedDims},
      {In::section, "material", texts::allowedMaterialName},
      {In::section, "", texts::allowedText},
      {In::dims, "", texts::allowedNumber},
      {In::bars, "", texts::allowedBar},
      {In::bar, "nodes", texts::allowedBarNodes},
      {In::bar, "section", texts::allowedSectionName},
      {In::bar, "visible", texts::allowedTruth},
      {In::bar, "angle", texts::allowedNumber},
      {In::bar, "quarterTurns", texts::allowedQuarterTurns},
      {In::bar, "", texts::allowedText},
      {In::barNodes, "", texts::allowedNodeIndex},
  };
  if (in_ == In::model && key_ == "unit") {
    return joined(unitNames);
  }
  if (in_ == In::bar && key_ == "type") {
    return say(texts::allowedType, {joined(barTypeNames)});
  }
  const auto* const found = std::find_if(std::begin(rows), std::end(rows), [&](const Row& row) {
    return row.in == in_ && (row.key.empty() || row.key == key_);
  });
  return say(found->allowed);
}

bool ModelBuilder::start_object(std::size_t /*size*/) {
  switch (in_) {
    case In::file:
      in_ = In::model;
      enterObject(&modelKeys);
      break;
    case In::model:
      if (key_ != "sections" && key_ != "materials") {
        failStructure(texts::objectNotAllowed);
      }
      seenOfModel_ = seen_;
      in_ = key_ == "sections" ? In::sections : In::materials;
      key_ = {};
      break;
    case In::materials:
      in_ = In::material;
      material_ = materialIndex(key_);
      materialHere().defined = true;
      key_ = {};
      enterObject(&materialKeys);
      break;
    case In::sections:
      in_ = In::section;
      section_ = sectionIndex(key_);
      sectionHere().defined = true;
      dimsGiven_ = false;
      key_ = {};
      enterObject(&sectionKeys);
      break;
    case In::bars:
      in_ = In::bar;
      bar_ = {};
      barName_.clear();
      barLayer_ = -1;
      key_ = {};
      enterObject(&barKeys);
      break;
    default: failStructure(texts::objectNotAllowed);
  }
  text_.opened('{');
  return true;
}

bool ModelBuilder::key(string_t& name) {
  if (in_ == In::sections || in_ == In::materials) {
    key_ = ownKey_ = name;
    if (isDefined(name)) {
      fail(say(texts::keyTwice, {name}));
    }
    return true;
  }
  const auto found = std::find(keys_->names.begin(), keys_->names.end(), name);
  if (found == keys_->names.end()) {
    failUnknownKey(name);
  }
  key_ = *found;
  const unsigned bit = 1U << static_cast<unsigned>(found - keys_->names.begin());
  if ((seen_ & bit) != 0) {
    fail(say(texts::keyTwice, {name}));
  }
  seen_ |= bit;
  return true;
}

void ModelBuilder::failUnknownKey(const std::string& name) {
  key_ = ownKey_ = name;
  failByText();
  const std::string near = nearest(name, keys_->names);
  constexpr unsigned shapeSeen = bitOf("text") | bitOf("catalogue");
  if (in_ == In::section && near.empty() && (seen_ & shapeSeen) != 0) {
    fail(say(texts::sectionNotClosed,
             {name, model_.sections[static_cast<std::size_t>(section_)].name}),
         {.value = name, .allowed = joined(keys_->names)});
  }
  if (in_ == In::material && isModelKey(materialHere().name)) {
    fail(say(texts::materialsNotClosed, {name, materialHere().name}),
         {.value = name, .allowed = joined(keys_->names)});
  }
  fail(say(texts::unknownKey, {name, joined(keys_->names)}) + guess(near),
       {.value = name, .allowed = joined(keys_->names), .suggestion = near});
}

bool ModelBuilder::end_object() {
  text_.closed();
  key_ = {};
  if (in_ != In::sections && in_ != In::materials) {
    for (std::size_t i = 0; i < keys_->required; ++i) {
      if ((seen_ & (1U << i)) == 0) {
        fail(say(texts::keyMissing, {keys_->names[i]}));
      }
    }
  }
  switch (in_) {
    case In::model: in_ = In::file; break;
    case In::sections:
    case In::materials:
      in_ = In::model;
      keys_ = &modelKeys;
      seen_ = seenOfModel_;
      break;
    case In::material: in_ = In::materials; break;
    case In::section:
      keepSection();
      in_ = In::sections;
      break;
    default: keepBar(); in_ = In::bars;
  }
  return true;
}

bool ModelBuilder::start_array(std::size_t /*size*/) {
  const auto enter = [&](In inner) {
    in_ = inner;
    item_ = 0;
  };
  if (in_ == In::model && key_ == "nodes") {
    seenOfModel_ = seen_;
    enter(In::nodes);
  } else if (in_ == In::model && key_ == "bars") {
    // A frame has two to three bars a node; to grow step by step took a twentieth of the reading.
    model_.bars.reserve(3 * model_.nodes.size());
    seenOfModel_ = seen_;
    enter(In::bars);
  } else if (in_ == In::nodes) {
    enter(In::node);
  } else if (in_ == In::section && key_ == "dims") {
    dimsGiven_ = true;
    enter(In::dims);
  } else if (in_ == In::bar && key_ == "nodes") {
    enter(In::barNodes);
  } else {
    failStructure(texts::arrayNotAllowed);
  }
  text_.opened('[');
  return true;
}

bool ModelBuilder::end_array() {
  text_.closed();
  switch (in_) {
    case In::nodes:
    case In::bars:
      in_ = In::model;
      keys_ = &modelKeys;
      seen_ = seenOfModel_;
      key_ = {};
      break;
    case In::node:
      if (item_ != node_.size()) {
        const bool mayHaveCommas = item_ > node_.size() && item_ <= 2 * node_.size();
        failAround(In::nodes, say(texts::threeCoordinates, {std::to_string(item_)}) +
                                  (mayHaveCommas ? say(texts::decimalComma) : ""));
      }
      in_ = In::nodes;
      model_.nodes.push_back(node_);
      break;
    case In::dims:
      sectionHere().givenDims = static_cast<int>(item_);
      in_ = In::section;
      break;
    default:
      if (item_ != 2) {
        failAround(In::bar, say(texts::twoNodes, {std::to_string(item_)}));
      }
      in_ = In::bar;
  }
  return true;
}

bool ModelBuilder::parse_error(std::size_t /*at*/, const std::string& token,
                               const nlohmann::json::exception& error) {
  constexpr int numberTooLarge = 406;
  if (error.id == numberTooLarge) {
    fail(say(texts::numberTooLarge, {token}));
  }
  const TextPlace place = text_.place();
  const bool ended = text_.sgetc() == JsonText::traits_type::eof();
  failByText();
  // The parser's token begins before the blanks; the fault is at its end.
  const std::string fault = toUtf8(std::string_view(token).substr(token.rfind(' ') + 1));
  const std::string message =
      ended ? say(texts::jsonEndsEarly) : say(texts::jsonUnexpected, {fault});
  throw ModelError({.code = "not-json", .message = message, .place = place});
}

bool ModelBuilder::scalar(const Scalar& value) {
  if (value.kind == Scalar::Kind::text && isList(in_)) {
    failByText();  // perhaps a key behind a list that is not closed
  }
  switch (in_) {
    case In::model: modelValue(value); break;
    case In::material: materialValue(value); break;
    case In::section: sectionValue(value); break;
    case In::bar: barValue(value); break;
    case In::node:
      // All are counted: the message says whether it is four, five or six.
      (item_ < node_.size() ? node_[item_] : node_.back()) = number(value);
      ++item_;
      break;
    case In::dims: {
      auto& dims = sectionHere().dims;
      if (item_ >= dims.size()) {
        failAround(In::section, say(texts::tenDims) + std::string(say(texts::decimalComma)));
      }
      dims[item_] = number(value);
      ++item_;
      break;
    }
    case In::barNodes:
      if (item_ >= 2) {
        failAround(In::bar, say(texts::twoNodes, {std::to_string(item_ + 1)}));
      }
      (item_ == 0 ? bar_.start : bar_.end) = integer(value);
      ++item_;
      break;
    case In::file: fail(say(texts::modelMustBeObject));
    case In::nodes:
    case In::bars:
    case In::materials:
    case In::sections: failValue(value);
  }
  return true;
}

void ModelBuilder::modelValue(const Scalar& value) {
  if (key_ == "unit") {
    const auto found = std::find(unitNames.begin(), unitNames.end(), value.text);
    if (value.kind != Scalar::Kind::text || found == unitNames.end()) {
      failValue(value, nearest(value.text, unitNames));
    }
    model_.unitCode = static_cast<std::int32_t>(found - unitNames.begin());
  } else if (key_ == "title") {
    model_.title = textOf(value);
  } else if (key_ == "$schema") {
    textOf(value);
  } else {
    failValue(value);
  }
}

void ModelBuilder::materialValue(const Scalar& value) {
  if (number(value) <= 0.0F) {
    failValue(value);
  }
  materialHere().density = value.real;
}

void ModelBuilder::sectionValue(const Scalar& value) {
  if (key_ == "dims") {
    failValue(value);
  } else if (key_ == "material") {
    sectionHere().material = materialIndex(textOf(value));
  } else if (key_ == "catalogue") {
    takeFromCatalogue(textOf(value));
  } else {
    sectionHere().text = textOf(value);
  }
}

void ModelBuilder::barValue(const Scalar& value) {
  if (key_ == "section") {
    bar_.section = sectionIndex(textOf(value));
  } else if (key_ == "type") {
    bar_.type = barType(value);
  } else if (key_ == "visible") {
    if (value.kind != Scalar::Kind::boolean) {
      failValue(value);
    }
    bar_.visible = value.boolean;
  } else if (key_ == "angle") {
    bar_.angle = number(value);
  } else if (key_ == "quarterTurns") {
    bar_.quarterTurns = integer(value);
  } else if (key_ == "name") {
    barName_ = textOf(value);
  } else if (key_ == "layer") {
    barLayer_ = layerIndex(textOf(value));
  } else {
    failValue(value);
  }
}

std::string_view ModelBuilder::textOf(const Scalar& value) const {
  if (value.kind != Scalar::Kind::text) {
    failValue(value);
  }
  return value.text;
}

float ModelBuilder::number(const Scalar& value) const {
  if (!value.isNumber()) {
    failValue(value);
  }
  // The largest number that still rounds to a finite single.
  if (std::fabs(value.real) > double{std::numeric_limits<float>::max()}) {
    fail(say(texts::numberTooLarge, {shown(value)}));
  }
  return static_cast<float>(value.real);
}

std::int32_t ModelBuilder::integer(const Scalar& value) const {
  if (value.kind != Scalar::Kind::integer ||
      value.integer > std::numeric_limits<std::int32_t>::max() ||
      value.integer < std::numeric_limits<std::int32_t>::min()) {
    failValue(value);
  }
  return static_cast<std::int32_t>(value.integer);
}

std::uint8_t ModelBuilder::barType(const Scalar& value) const {
  constexpr auto count = static_cast<std::int64_t>(barTypeNames.size());
  if (value.kind == Scalar::Kind::integer && value.integer >= 0 && value.integer < count) {
    return static_cast<std::uint8_t>(value.integer);
  }
  if (value.kind == Scalar::Kind::text) {
    const auto found = std::find(barTypeNames.begin(), barTypeNames.end(), value.text);
    if (found != barTypeNames.end()) {
      return static_cast<std::uint8_t>(found - barTypeNames.begin());
    }
  }
  failValue(value, nearest(value.text, barTypeNames));
}

std::int32_t ModelBuilder::sectionIndex(std::string_view name) {
  if (!model_.bars.empty()) {
    // Mostly that of the bar before: a comparison instead of a search.
    const std::int32_t last = model_.bars.back().section;
    if (model_.sections[static_cast<std::size_t>(last)].name == name) {
      return last;
    }
  }
  const auto known = sectionIndexes_.find(name);
  if (known != sectionIndexes_.end()) {
    return known->second;
  }
  const auto next = static_cast<std::int32_t>(model_.sections.size());
  sectionIndexes_.emplace(name, next);
  model_.sections.push_back({.name = std::string(name), .text = {}, .dims = {}, .defined = false});
  return next;
}

void ModelBuilder::takeFromCatalogue(std::string_view name) {
  const RolledSection* const rolled = findRolledSection(name);
  if (rolled == nullptr) {
    const std::vector<std::string> near = nearestRolledSections(name);
    const std::string shownName = excerpt(name);
    fail(
        say(texts::notInCatalogue, {shownName}) +
            (near.empty() ? say(texts::catalogueAdvice)
                          : guess(joined(std::vector<std::string_view>(near.begin(), near.end())))),
        {.value = shownName, .suggestion = near.empty() ? std::string() : near.front()});
  }
  sectionHere().catalogue = rolled->name;
  sectionHere().text = sectionText(*rolled);
}

void ModelBuilder::keepSection() {
  const bool isRolled = (seen_ & bitOf("catalogue")) != 0;
  if (isRolled && (seen_ & (bitOf("text") | bitOf("dims"))) != 0) {
    fail(say(texts::catalogueAndText, {sectionHere().catalogue}));
  }
  if (!isRolled && (seen_ & bitOf("text")) == 0) {
    fail(say(texts::sectionWithoutText));
  }
  if (!dimsGiven_) {
    sectionHere().dims = parseSectionDims(sectionHere().text);
  }
}

std::int32_t ModelBuilder::materialIndex(std::string_view name) {
  const auto next = static_cast<std::int32_t>(model_.materials.size());
  const auto [place, isNew] = materialIndexes_.try_emplace(std::string(name), next);
  if (isNew) {
    model_.materials.push_back({.name = std::string(name), .defined = false});
  }
  return place->second;
}

/// An empty name is no layer.
std::int32_t ModelBuilder::layerIndex(std::string_view name) {
  if (name.empty()) {
    return -1;
  }
  if (const auto known = layerIndexes_.find(name); known != layerIndexes_.end()) {
    return known->second;
  }
  const auto next = static_cast<std::int32_t>(model_.layers.size());
  layerIndexes_.emplace(name, next);
  model_.layers.emplace_back(name);
  return next;
}

/// Whether the section, or the material, has stood before.
bool ModelBuilder::isDefined(std::string_view name) const {
  const bool isSection = in_ == In::sections;
  const Indexes& indexes = isSection ? sectionIndexes_ : materialIndexes_;
  const auto known = indexes.find(name);
  if (known == indexes.end()) {
    return false;
  }
  const auto index = static_cast<std::size_t>(known->second);
  return isSection ? model_.sections[index].defined : model_.materials[index].defined;
}

/// Names and layers begin to be kept with the first bar that has one.
void ModelBuilder::keepBar() {
  const std::size_t before = model_.bars.size();
  if (!barName_.empty() || !model_.barNames.empty()) {
    model_.barNames.resize(before);
    model_.barNames.push_back(std::move(barName_));
  }
  if (barLayer_ >= 0 || !model_.barLayers.empty()) {
    model_.barLayers.resize(before, -1);
    model_.barLayers.push_back(barLayer_);
  }
  model_.bars.push_back(bar_);
}

}  // namespace

Model readJsonModel(std::streambuf& text) {
  JsonText counted(text);
  counted.skipMark();
  ModelBuilder builder(counted);
  std::istream stream(&counted);
  nlohmann::json::sax_parse(stream, &builder);
  Model model = builder.take();
  model.format = ModelFormat::json;
  model.announcedBars = static_cast<std::int32_t>(model.bars.size());
  return model;
}

}  // namespace exportifc
