#include "diagnosis/activetest.h"

#include "platform/system/text/text.h"
#include "platform/system/text/wildcards.h"

namespace varnik {

namespace {

using enum Problem;

// What a test should look for instead.
std::string Advice(const UndoOrder& undo) {
  const std::string& given = undo.FirstGiven();
  return given.empty() ? ": name one that a line of the mod makes" : ": test for " + Quoted(given) + ", which it makes";
}

void ReportNever(const Place& place, const std::string& name, const UndoOrder& undo) {
  const NameFate* const fate = undo.FateOf(name);
  const std::string why = fate ? NameOfLine(fate->line) + " moves " + Quoted(fate->oldName) + " away"
                               : "no line of the mod makes " + Quoted(name) + ", and the install has none";
  place.Report(kNeverActive, why + ", so the mod always counts as inactive" + Advice(undo));
}

}  // namespace

void ActiveTests::AddMade(const std::string& name) { made_.insert(win::LowerCase(name)); }

ActiveTests::Answer ActiveTests::AnswerOf(const std::string& name, const UndoOrder& undo,
                                          const InstallCheck* install) const {
  if (win::HasWildcards(name)) return Answer::kTells;
  if (const NameFate* const fate = undo.FateOf(name)) {
    if (fate->use == NameUse::kMoves) return Answer::kNeverThere;
    if (!install) return Answer::kTells;
    // Whether the mod is active now or not, something stands in this place without it.
    const bool isReplaced = fate->use == NameUse::kReplaces && install->Has(fate->backup);
    const bool isInactive = !fate->replacement.empty() && install->Has(fate->replacement);
    return isReplaced || (isInactive && install->Has(name)) ? Answer::kAlwaysThere : Answer::kTells;
  }
  if (!install || made_.contains(win::LowerCase(name))) return Answer::kTells;
  return install->Has(name) ? Answer::kAlwaysThere : Answer::kNeverThere;
}

void ActiveTests::Check(const UndoOrder& undo, const InstallCheck* install) const {
  bool anyTells = hasList_;
  for (const auto& [place, name] : paths_) {
    const Answer answer = AnswerOf(name, undo, install);
    if (answer == Answer::kNeverThere) ReportNever(place, name, undo);
    anyTells |= answer != Answer::kAlwaysThere;
  }
  if (anyTells) return;
  for (const auto& [place, name] : paths_)
    place.Report(
        kAlwaysActive,
        Quoted(name) + " is in the install without the mod too, so the mod always counts as active" + Advice(undo));
}

}  // namespace varnik
