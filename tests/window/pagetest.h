#pragma once

#include "installs/installlist.h"
#include "modengine/catalogue.h"
#include "support/runstate.h"
#include "tests/harness/sandbox.h"
#include "tests/harness/window_app.h"
#include "windowing/control.h"
#include "windowing/form.h"

#include <QTest>

#include <string>

namespace test {

// An install to work on, selected, for tests of pages and dialogs.
class PageTest : public WindowTest {
 protected:
  PageTest() {
    varnik::AppPath = sandbox_.AppText();
    sandbox_.MakeInstall();
    varnik::UseInstallFolder(sandbox_.InstallText());
    varnik::SelectModFolders(-1);
  }

  std::filesystem::path InRoot(const std::string& name) const { return sandbox_.Install() / name; }
  std::string Content(const std::string& name) const { return ReadFile(InRoot(name)); }

  Sandbox sandbox_;
};

// A window for a page to stand in.
template <class Page>
struct PageForm : win::Form {
  template <class... Args>
  explicit PageForm(Args... args) : Form("frmTest", 8000, 6000), page(*this, args...) {}
  Page page;
};

inline void ShowActive(win::Form& form) {
  form.Show();
  form.SetFocus();
  ASSERT_TRUE(QTest::qWaitForWindowActive(form.Window()));
}

inline void PressCtrl(const win::Control& control, Qt::Key key) {
  QTest::keyClick(control.Widget(), key, Qt::ControlModifier);
}

// The control that takes the keys, by its name.
inline std::string Focused(const win::Form& form) {
  const QWidget* widget = form.Window()->focusWidget();
  return widget ? widget->objectName().toStdString() : "";
}

}  // namespace test
