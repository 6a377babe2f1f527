#include <xcb/xcb.h>

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>

// window_shown PROGRAM ARGUMENT...: starts the program, prints the milliseconds until a window of at least 500 pixels
// width is on the screen, and ends the program. Smaller ones show while a program loads.
namespace {

constexpr int kLeastWidth = 500;

void AwaitWindow(xcb_connection_t* screen) {
  while (xcb_generic_event_t* event = xcb_wait_for_event(screen)) {
    const bool isMapped = (event->response_type & 0x7F) == XCB_MAP_NOTIFY;
    const xcb_window_t window = reinterpret_cast<xcb_map_notify_event_t*>(event)->window;
    std::free(event);
    if (!isMapped) continue;
    xcb_get_geometry_reply_t* size = xcb_get_geometry_reply(screen, xcb_get_geometry(screen, window), nullptr);
    const bool isWide = size != nullptr && size->width >= kLeastWidth;
    std::free(size);
    if (isWide) return;
  }
}

}  // namespace

int main(int argc, char** argv) {
  xcb_connection_t* screen = xcb_connect(nullptr, nullptr);
  if (argc < 2 || xcb_connection_has_error(screen) != 0) return 1;
  const std::uint32_t events = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
  const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(screen)).data->root;
  xcb_change_window_attributes(screen, root, XCB_CW_EVENT_MASK, &events);
  xcb_flush(screen);

  const auto start = std::chrono::steady_clock::now();
  const pid_t program = fork();
  if (program == 0) {
    execv(argv[1], argv + 1);
    _exit(127);
  }
  AwaitWindow(screen);
  const std::chrono::duration<double, std::milli> passed = std::chrono::steady_clock::now() - start;
  kill(program, SIGKILL);
  waitpid(program, nullptr, 0);
  std::printf("%.0f\n", passed.count());
}
