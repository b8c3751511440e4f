// What the tests of models as documents share.
#pragma once

#include "library/text/text.h"

namespace exportifc::test {

/// A language for a while; English again behind it, as every test begins.
class InLanguage {
 public:
  explicit InLanguage(Language language) { setLanguage(language); }
  InLanguage(const InLanguage&) = delete;
  InLanguage& operator=(const InLanguage&) = delete;
  ~InLanguage() { setLanguage(Language::english); }
};

}  // namespace exportifc::test
