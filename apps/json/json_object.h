#pragma once

#include <ondrel/types.h>

#include <cstdint>
#include <string>
#include <string_view>

namespace tolvarin::ondrel::client {

/// The version of the schema that docs/json.md describes. It rises when a key goes or means
/// something else, not when one comes.
constexpr int jsonSchema = 1;

/// Appends a JSON object (RFC 8259) to a text, key by key, from its construction on; end() closes
/// it. A key stands as it is given: no quotation mark and no backslash in it.
///
/// With nlohmann::ordered_json in its place, decodeRecordingToJson of bench/client_bench.cpp takes
/// 3.5 times as long.
class JsonObject {
public:
    /// The text must outlive the object.
    explicit JsonObject(std::string& text) : _text(text) { _text += '{'; }

    void whole(std::string_view key, std::int64_t value);
    void count(std::string_view key, u64 value) { whole(key, static_cast<std::int64_t>(value)); }

    /// The shortest digits that give the same number again; infinities and NaN are left out, since
    /// JSON has none.
    void decimal(std::string_view key, double value);

    /// With so many decimals; infinities and NaN are left out.
    void rounded(std::string_view key, double value, int decimals);

    void flag(std::string_view key, bool value);

    /// ASCII; any other byte becomes U+FFFD.
    void words(std::string_view key, std::string_view value);

    /// Two upper-case digits a byte.
    void hex(std::string_view key, std::string_view bytes);

    /// An array with an object for each item: `add` gets the object and the item.
    template <class Items, class Add>
    void list(std::string_view key, const Items& items, Add add) {
        begin(key);
        _text += '[';
        for (const auto& item : items) {
            if (_text.back() != '[') {
                _text += ',';
            }
            JsonObject object(_text);
            add(object, item);
            object.end();
        }
        _text += ']';
    }

    void end() { _text += '}'; }

private:
    void begin(std::string_view key);

    std::string& _text;
    bool _first = true;
};

} // namespace tolvarin::ondrel::client
