#include "windowing/application.h"

#include "platform/system/paths/program.h"
#include "platform/system/process/instance.h"
#include "platform/windowing/accessibility.h"
#include "platform/windowing/colorscheme.h"
#include "platform/windowing/qtsupport.h"
#include "windowing/dialogs.h"
#include "windowing/form.h"
#include "windowing/picture.h"

#include <QApplication>
#include <QIcon>
#include <QPixmap>
#include <QSocketNotifier>
#include <QTimer>

#include <signal.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <utility>

namespace win {

namespace {

using Clock = std::chrono::steady_clock;
constexpr std::chrono::milliseconds kEventPause(10);  // between two runs of the events in a long loop
constexpr int kMaxRuns = 20;                          // in a row, after a longer pause
constexpr int kMaxRun = 50;                           // milliseconds
constexpr int kRetryDelay = 200;  // milliseconds until a request to close is put to a busy form again

// A loop that asks a hundred thousand times a second gets its events run a hundred times a second; a call by itself is
// always served.
void RunEvents() {
  static Clock::time_point next;
  const Clock::time_point now = Clock::now();
  next = std::max(next, now - kMaxRuns * kEventPause);
  if (next > now) return;
  next += kEventPause;
  QCoreApplication::processEvents(QEventLoop::AllEvents, kMaxRun);
  Form::AwaitShownForms();
}

int signalPipe[2] = {-1, -1};

void ForwardSignal(int) {
  const int kept = errno;
  const char byte = 0;
  [[maybe_unused]] const ssize_t written = write(signalPipe[1], &byte, 1);
  errno = kept;
}

void CatchSignals() {
  for (const int number : {SIGTERM, SIGINT, SIGHUP}) {
    struct sigaction action = {};
    sigaction(number, nullptr, &action);
    if (action.sa_handler == SIG_IGN) continue;  // as under nohup
    action.sa_handler = ForwardSignal;
    action.sa_flags = SA_RESTART;
    sigaction(number, &action, nullptr);
  }
}

void ReleaseSignals() {
  for (const int number : {SIGTERM, SIGINT, SIGHUP}) {
    struct sigaction action = {};
    sigaction(number, nullptr, &action);
    if (action.sa_handler == ForwardSignal) signal(number, SIG_DFL);
  }
}

QtMessageHandler ordinaryMessages;

// Qt aborts a program that cannot reach a display.
void OnStartMessage(QtMsgType type, const QMessageLogContext& context, const QString& text) {
  if (type != QtFatalMsg) return ordinaryMessages(type, context, text);
  std::fprintf(stderr, "%s: no display can be reached, so there is no window\n", Program().name.c_str());
  std::_Exit(kNoDisplayStatus);
}

class QtApplication : public QApplication {
 public:
  using QApplication::QApplication;
  std::function<void()> sessionEnds;

  // The desktop's session asks to quit. Qt would close every window by itself.
  bool event(QEvent* event) override {
    if (event->type() != QEvent::Quit || !sessionEnds) return QApplication::event(event);
    sessionEnds();
    return true;
  }
};

}  // namespace

struct Application::Impl {
  Impl();
  void Request(UnloadMode mode);
  void PutRequest();

  // Qt takes its own switches from a program's arguments; ours are all for the program.
  std::string programName = Program().name;
  char* argv[2] = {programName.data(), nullptr};
  int argc = 1;
  QtApplication qt{argc, argv};
  ColorScheme colorScheme;
  QTimer retry;
  QTimer quit;  // a form that follows the last one keeps the program going
  std::unique_ptr<QSocketNotifier> signalNotifier, requestNotifier;
  Form* mainForm = nullptr;
  std::optional<UnloadMode> requested;
  bool running = false;
};

Application::Impl::Impl() {
  QApplication::setQuitOnLastWindowClosed(false);
  retry.setSingleShot(true);
  QObject::connect(&retry, &QTimer::timeout, &retry, [this] { PutRequest(); });
  Form::SetNoFormLeft([this] { quit.start(); });
  quit.setSingleShot(true);
  QObject::connect(&quit, &QTimer::timeout, &quit, [this] {
    if (running && OpenForms().empty()) QCoreApplication::exit();
  });
  qt.sessionEnds = [this] { Request(UnloadMode::kAppWindows); };
  if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0, signalPipe) != 0) return;
  signalNotifier = std::make_unique<QSocketNotifier>(signalPipe[0], QSocketNotifier::Read);
  QObject::connect(signalNotifier.get(), &QSocketNotifier::activated, signalNotifier.get(), [this] {
    char byte;
    while (read(signalPipe[0], &byte, 1) == 1) {
    }
    Request(UnloadMode::kAppWindows);
  });
  CatchSignals();
}

void Application::Impl::Request(UnloadMode mode) {
  requested = mode;
  PutRequest();
}

void Application::Impl::PutRequest() {
  if (!requested) return;
  if (!mainForm || !mainForm->Enabled() || mainForm->IsLoading()) {
    retry.start(kRetryDelay);
    return;
  }
  mainForm->Close(*std::exchange(requested, std::nullopt));
}

Application::Application() {
  ordinaryMessages = qInstallMessageHandler(OnStartMessage);
  impl_ = std::make_unique<Impl>();
  qInstallMessageHandler(ordinaryMessages);
  QApplication::setDesktopFileName(QString::fromStdString(Program().name));
  WindowServices services = BoxServices();
  services.doEvents = RunEvents;
  InstallAccessibility();
  SetWindowServices(services);
}

Application::~Application() {
  SetWindowServices({});
  Form::SetNoFormLeft({});
  // What was destroyed behind the last run of the events.
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  ReleaseSignals();
  impl_->signalNotifier.reset();
  for (int& end : signalPipe)
    close(std::exchange(end, -1));
}

void Application::SetIcon(const Picture& picture) {
  QApplication::setWindowIcon(QIcon(QPixmap::fromImage(picture.Image())));
}

void Application::SetMainForm(Form* form) { impl_->mainForm = form; }

void Application::Serve(Instance& instance) {
  if (instance.Descriptor() < 0) return;
  instance.OnCloseRequest([this] { impl_->Request(UnloadMode::kControlMenu); });
  impl_->requestNotifier = std::make_unique<QSocketNotifier>(instance.Descriptor(), QSocketNotifier::Read);
  QObject::connect(impl_->requestNotifier.get(), &QSocketNotifier::activated, impl_->requestNotifier.get(),
                   [&instance] { instance.HandleRequests(); });
}

void Application::Run() {
  if (OpenForms().empty()) return;
  impl_->running = true;
  QApplication::exec();
  impl_->running = false;
}

}  // namespace win
