#pragma once
// Table: rows of text in aligned columns, for the listings of the command line.
//   Table table({"ID", "TYPE"});
//   table.addRow({"0", "suspension"});
//   table.print(std::cout);   // "ID  TYPE\n0   suspension\n"

#include <ostream>
#include <string>
#include <vector>

namespace tov {
namespace inspect {

class Table {
public:
    explicit Table(std::vector<std::string> headers);

    // A row shorter than the headers is completed with empty cells; a longer one is cut.
    void addRow(std::vector<std::string> cells);
    bool empty() const { return rows.empty(); }
    // Columns stay at least this wide, so that tables printed one after another line up as long as no
    // cell is wider.
    void setMinimumWidths(std::vector<std::size_t> widths);

    // Each column as wide as its widest cell, two blanks apart; the last column is not padded.
    void print(std::ostream& out, bool withHeaders = true) const;

private:
    std::vector<std::string> headers;
    std::vector<std::vector<std::string>> rows;
    std::vector<std::size_t> minimumWidths;
};

} // namespace inspect
} // namespace tov
