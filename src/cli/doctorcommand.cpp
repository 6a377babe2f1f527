#include "cli/commands.h"
#include "cli/output.h"
#include "cli/session.h"
#include "diagnosis/doctor.h"

namespace varnik::cli {

namespace {

int Look(const Arguments& arguments) {
  Json list = Json::array();
  std::string text;
  bool allFixed = true;
  for (const Leftover& leftover : FindLeftovers()) {
    const bool isTried = arguments.fix && leftover.mend;
    if (isTried) Note(leftover.item + ": " + leftover.remedy);
    const bool fixed = isTried && Mend(leftover);
    if (isTried && !fixed) Note(leftover.item + ": could not be fixed");
    allFixed = allFixed && fixed;
    list.push_back({{"Item", Text(leftover.item)},
                    {"Meaning", Text(leftover.meaning)},
                    {"Remedy", Text(leftover.remedy)},
                    {"Fixable", leftover.mend != nullptr},
                    {"Fixed", fixed}});
    const char* const state = fixed ? "fixed" : leftover.mend ? "--fix does it" : "by hand";
    text += (text.empty() ? "" : "\n") + leftover.item + " (" + state + ")\n  " + leftover.meaning + "\n  " +
            leftover.remedy;
  }
  const int printed = arguments.json ? Print(list) : PrintLine(list.empty() ? "Nothing was left behind." : text);
  return allFixed ? printed : kFailed;
}

}  // namespace

int LookAtInstall(const Arguments& arguments) {
  if (!arguments.fix) return Look(arguments);
  return Uninterrupted("waited until everything that could be fixed had been", [&] { return Look(arguments); });
}

}  // namespace varnik::cli
