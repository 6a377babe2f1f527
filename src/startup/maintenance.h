#pragma once

namespace win {
class Instance;
}

namespace varnik {

// The address that the browser's about: entry of the program leads to.
constexpr char kHomePage[] = "https://varnik.example/";

// Answers the whole-line words clearreg and close. False for any other line.
[[nodiscard]] bool AnswerMaintenanceWord(win::Instance& instance);

// True when another instance runs, or works on an install, and the caller must stop: a message has said so. With
// `closeOther` the other one is asked to close and the result is false.
[[nodiscard]] bool ActivatePrevInstance(win::Instance& instance, bool closeOther);

// Writes the home page's entry. What is read comes back in upper case, so that it differs from the address at every
// start.
void PublishHomePage();

}  // namespace varnik
