// A test aid for driving the real program from outside, without a person at the screen.
//
// When the environment variable TESSARY_TEST_LOG names a file, the program appends to it one line
// per message box it would show ("message: " + the text, line ends written as "\n"), answers the
// box itself without showing it (OK, or Cancel for a Yes/No/Cancel question, so nothing is saved
// or discarded behind the user's back), answers every other dialog with Cancel, and appends the
// window list ("windows: " + the captions, separated by " | ") whenever it changes. Without the
// variable none of this happens. Tests of the single-instance hand-over use it.
#pragma once

#include <QString>

namespace testlog {

bool active();
void append(const QString& line);

} // namespace testlog
