#pragma once

#include <fstream>
#include <map>
#include <string>

namespace tolvarin::ondrel::client {

/// The type of each key, as a page of docs/ names it.
using Types = std::map<std::string, std::string>;

/// The rows of each section of a page, by the heading of the section.
inline std::map<std::string, Types> typesOfPage(const std::string& name) {
    std::ifstream page(ONDREL_DOCS "/" + name);
    std::map<std::string, Types> sections;
    std::string heading;
    std::string line;
    while (std::getline(page, line)) {
        if (line.substr(0, 2) == "##") {
            heading = line.substr(line.find(' ') + 1);
        }
        if (line.substr(0, 3) == "| `") {
            const std::size_t end = line.find("` | ");
            const std::size_t type = end + 4;
            sections[heading][line.substr(3, end - 3)] =
                line.substr(type, line.find(' ', type) - type);
        }
    }
    return sections;
}

} // namespace tolvarin::ondrel::client
