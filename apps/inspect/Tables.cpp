#include "apps/inspect/Tables.h"

#include <algorithm>

namespace tov {
namespace inspect {

namespace {

void printRow(std::ostream& out, const std::vector<std::string>& cells, const std::vector<std::size_t>& widths)
{
    std::string line;
    for (std::size_t column = 0; column < cells.size(); ++column) {
        line += cells[column];
        if (column + 1 < cells.size()) {
            line.append(widths[column] - cells[column].size() + 2, ' ');
        }
    }
    // Trailing blanks of empty last cells help nobody.
    line.erase(line.find_last_not_of(' ') + 1);
    out << line << '\n';
}

} // namespace

Table::Table(std::vector<std::string> headers) : headers(std::move(headers)), minimumWidths(this->headers.size(), 0) {}

void Table::addRow(std::vector<std::string> cells)
{
    cells.resize(headers.size());
    rows.push_back(std::move(cells));
}

void Table::setMinimumWidths(std::vector<std::size_t> widths)
{
    widths.resize(headers.size(), 0);
    minimumWidths = std::move(widths);
}

void Table::print(std::ostream& out, bool withHeaders) const
{
    std::vector<std::size_t> widths = minimumWidths;
    for (std::size_t column = 0; column < headers.size(); ++column) {
        widths[column] = std::max(widths[column], headers[column].size());
        for (const std::vector<std::string>& row : rows) {
            widths[column] = std::max(widths[column], row[column].size());
        }
    }
    if (withHeaders) {
        printRow(out, headers, widths);
    }
    for (const std::vector<std::string>& row : rows) {
        printRow(out, row, widths);
    }
}

} // namespace inspect
} // namespace tov
