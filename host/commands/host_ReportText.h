#pragma once

#include <string>

// What printed reports are made of.

/// Six significant digits, as printf's %g in the C locale; never "-0".
[[nodiscard]] std::string host_NumberText(double value);

/// The text with blanks before or behind it up to \p width.
[[nodiscard]] std::string host_PadLeft(const std::string& text, std::size_t width);
[[nodiscard]] std::string host_PadRight(const std::string& text, std::size_t width);
