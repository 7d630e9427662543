#pragma once

#include <string>
#include <vector>

/// A table of text (UTF-8): equally long rows of cells, of which the first \p headings are above a
/// line. Where it would be more than 100 characters wide, it comes in blocks of columns, each
/// behind the first column. Long cells are shortened in their middle.
[[nodiscard]] std::string host_TextTable(const std::vector<std::vector<std::string>>& rows,
                                         std::size_t headings);
