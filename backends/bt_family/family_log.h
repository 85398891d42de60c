// A family's diagnostic log: every line begins with the family's tag.
#pragma once

namespace zelk {

struct FamilyLog {
  const char* tag;
  const char* fileName;

  // Appends a line: the tag and up to three pieces of text, nothing between them.
  void Say(const char* text, const char* text2 = "", const char* text3 = "") const;
};

}  // namespace zelk
