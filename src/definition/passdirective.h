#pragma once

#include "definition/directive.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

// The tables by which the three passes over a definition act. Each pass has its own: their differences are wanted.
namespace varnik {

// A directive as one pass knows it.
struct DirectiveForm {
  std::string_view name;  // in lower case
  std::size_t arguments;  // with fewer the line is passed over
};

template <typename Walk>
struct PassDirective {
  std::string_view name;
  std::size_t arguments;
  void (*act)(Walk& walk, const Args& args);
};

template <typename Walk, std::size_t N>
void ActOnDirective(const PassDirective<Walk> (&directives)[N], Walk& walk, const Args& args) {
  for (const PassDirective<Walk>& directive : directives)
    if (args[0] == directive.name && args.size() > directive.arguments) directive.act(walk, args);
}

template <typename Walk, std::size_t N>
std::vector<DirectiveForm> FormsOf(const PassDirective<Walk> (&directives)[N]) {
  std::vector<DirectiveForm> forms;
  for (const PassDirective<Walk>& directive : directives)
    forms.push_back({directive.name, directive.arguments});
  return forms;
}

// What each pass knows; it passes over every other line.
std::vector<DirectiveForm> CatalogueDirectives();
std::vector<DirectiveForm> ActivationDirectives();
std::vector<DirectiveForm> DeactivationDirectives();

// True when an argument of a `version` line names this version of an install.
bool NamesVersion(const Args& args, const std::string& version);

}  // namespace varnik
