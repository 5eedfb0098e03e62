#pragma once

#include <istream>
#include <ostream>

/// What is to be done to a window.
enum WindowTaskType {
    WindowTaskShow = 0,
    WindowTaskHide = 1,
};

/// By name, "show" or "hide". Reading takes one word; an unknown name sets the fail state and
/// reads nothing.
std::ostream &operator<<(std::ostream &stream, WindowTaskType type);
std::istream &operator>>(std::istream &stream, WindowTaskType &type);
