#include "diagnosis/definitioncheck.h"
#include "modengine/activation.h"
#include "modengine/deactivation.h"
#include "modengine/definitionreader.h"

#include <gtest/gtest.h>

#include <set>

namespace {

// A directive that the check has no routine for would pass it without a word.
TEST(CheckTable, KnowsEveryDirectiveOfThePasses) {
  std::set<std::string_view> checked, known;
  for (const varnik::DirectiveForm& form : varnik::CheckedDirectives())
    checked.insert(form.name);
  for (const auto& pass :
       {varnik::CatalogueDirectives(), varnik::ActivationDirectives(), varnik::DeactivationDirectives()})
    for (const varnik::DirectiveForm& form : pass)
      known.insert(form.name);
  EXPECT_EQ(checked, known);
}

}  // namespace
