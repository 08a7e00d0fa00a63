/// @file
/// A slow model of one ADS-B message object, made from the plain tables.
#pragma once

#include "adsb/plain_tables.h"

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace tolvarin::ondrel::plain {

inline std::string fieldLine(unsigned pos, unsigned bits, const std::string& name,
                             const std::string& value) {
    return std::to_string(pos) + '/' + std::to_string(bits) + ' ' + name + '=' + value + '\n';
}

class Message {
public:
    Message(char kind, int version) : _kind(kind), _version(version) {
        for (const Row& row : rows) {
            if (isFor(row.kind, kind, version)) {
                _texts[row.name] = row.initially;
            }
        }
        _texts["TYPE"] = typeNames.at(kinds.find(kind));
    }

    bool decode(const Bits& bits) {
        _bits = bits;
        _texts["TYPE_CODE"] = std::to_string(number(bits, 1, 5));
        if (kindOf(number(bits, 1, 5)) != _kind) {
            log.emplace_back("[CRITICAL][ADSBMessage] Type code mismatch.");
            return false;
        }
        valid = true;
        takeFields(judge());
        return valid;
    }

    std::string text(const std::string& name) const { return _texts.at(name); }

    std::string allText() const {
        std::string lines = description() + '\n' + hexadecimal(packed(_bits)) + '\n';
        for (const auto& field : _fields) {
            lines += field.second;
        }
        return lines;
    }

    bool valid = false;
    std::vector<std::string> log;

private:
    /// Applies the rules; gives how many fields the payload comes to.
    std::size_t judge() {
        std::size_t fields = rows.size();
        for (const Rule& rule : rules) {
            const long value = number(_bits, rule.first, rule.last);
            if (!isFor(rule.kind, _kind, _version) || value < rule.from || value > rule.to) {
                continue;
            }
            std::string line = rule.line;
            if (const auto place = line.find('%'); place != std::string::npos) {
                line.replace(place, 1, std::to_string(value));
            }
            if (!line.empty()) {
                log.push_back(line);
            }
            fields = std::min(fields, rule.mostFields);
            valid = valid && !rule.refuses;
        }
        return fields;
    }

    void takeFields(std::size_t count) {
        for (const Row& row : rows) {
            if (!isFor(row.kind, _kind, _version)) {
                continue;
            }
            const bool isField = std::isupper(static_cast<u8>(row.name[0])) != 0;
            if (isField && count-- == 0) {
                break;
            }
            std::string& text = _texts[row.name];
            // Only an emergency has a state; without one the last stays.
            const bool stays = row.kind == "A" && row.first == 9 && number(_bits, 6, 8) != 1;
            text = stays ? text : row.show(_bits, number(_bits, row.first, row.last));
            if (isField) {
                const unsigned width = row.last - row.first + 1;
                _fields.emplace_back(row.first, fieldLine(row.first - 1, width, row.name, text));
            }
        }
        std::stable_sort(_fields.begin(), _fields.end(),
                         [](const auto& a, const auto& b) { return a.first < b.first; });
    }

    std::string description() const {
        std::string line;
        for (const auto& [kind, part] : descriptions) {
            line += isFor(kind, _kind, _version) ? part : "";
        }
        for (auto open = line.find('{'); open != std::string::npos; open = line.find('{')) {
            const auto close = line.find('}');
            line.replace(open, close - open + 1, text(line.substr(open + 1, close - open - 1)));
        }
        return line;
    }

    char _kind;
    int _version;
    Bits _bits;
    std::vector<std::pair<unsigned, std::string>> _fields;
    std::map<std::string, std::string> _texts;
};

} // namespace tolvarin::ondrel::plain
