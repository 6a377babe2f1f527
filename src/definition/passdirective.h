#pragma once

#include "definition/directive.h"

#include <cstddef>
#include <string_view>
#include <vector>

// The tables by which the passes over a definition act. Each pass has its own, and they differ on purpose.
namespace varnik {

// A directive as one pass knows it.
struct DirectiveForm {
  std::string_view name;  // in lower case
  std::size_t arguments;  // with fewer the line is skipped
};

template <typename State>
struct PassDirective {
  std::string_view name;
  std::size_t arguments;
  void (*act)(State& state, const Args& args);
};

template <typename State, std::size_t N>
void ActOnDirective(const PassDirective<State> (&directives)[N], State& state, const Args& args) {
  for (const PassDirective<State>& directive : directives)
    if (args[0] == directive.name && args.size() > directive.arguments) directive.act(state, args);
}

// What the pass knows; it skips every other line.
template <typename State, std::size_t N>
std::vector<DirectiveForm> FormsOf(const PassDirective<State> (&directives)[N]) {
  std::vector<DirectiveForm> forms;
  for (const PassDirective<State>& directive : directives)
    forms.push_back({directive.name, directive.arguments});
  return forms;
}

}  // namespace varnik
