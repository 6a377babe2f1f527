#include <QApplication>
#include <QLineEdit>
#include <QMainWindow>

#include <cstdlib>

// A window with as many widgets as the argument says, and nothing behind them: what Qt itself needs to show that much.
int main(int argc, char** argv) {
  QApplication application(argc, argv);
  QMainWindow window;
  window.setWindowTitle("Empty");
  auto* area = new QWidget;
  window.setCentralWidget(area);
  const int widgets = argc > 1 ? std::atoi(argv[1]) : 1;
  for (int i = 0; i < widgets; ++i)
    (new QLineEdit(area))->setGeometry(i % 10 * 50, i / 10 * 25, 48, 22);
  window.resize(526, 462);
  window.show();
  return QApplication::exec();
}
