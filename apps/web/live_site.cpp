#include "apps/web/live_site.h"

#include "apps/common/text.h"
#include "apps/json/map_json.h"
#include "apps/pages/aircraft_page.h"
#include "apps/pages/html.h"
#include "apps/pages/index_page.h"
#include "apps/pages/style_sheets.h"
#include "apps/web/gzip.h"
#include "apps/web/live_script.h"

#include <algorithm>
#include <cctype>
#include <string_view>
#include <utility>

namespace tolvarin::ondrel::client {

namespace {

constexpr const char* html = "text/html; charset=utf-8";
constexpr const char* json = "application/json";
constexpr const char* script = "text/javascript; charset=utf-8";

/// The script keeps the page current; without scripts, the browser loads it again.
constexpr std::string_view liveHead =
    "<script src=\"live.js\" defer></script>\n"
    "<noscript><meta http-equiv=\"refresh\" content=\"5\"></noscript>\n";

HttpAnswer answerOf(std::string text, const char* type, unsigned status = 200) {
    HttpAnswer answer;
    answer.status = status;
    answer.type = type;
    answer.body = std::make_shared<const std::string>(std::move(text));
    return answer;
}

HttpAnswer notFound(const std::string& text) {
    return answerOf(text, HttpAnswer().type.c_str(), 404);
}

constexpr std::size_t dot = 7; // behind "/ABCDEF"

/// An address of an aircraft may also have small letters.
std::string inCapitals(std::string path) {
    if (path.size() > dot && path[dot] == '.') {
        std::transform(path.begin(), path.begin() + dot, path.begin(), [](unsigned char letter) {
            return static_cast<char>(std::toupper(letter));
        });
    }
    return path;
}

/// The report of the library, with a line on it that tells what it is.
std::string reportPage(const TrackedAircraft& aircraft) {
    constexpr std::string_view note =
        "<p>This is the report of the library. Its position is the one that was solved last, "
        "unchecked: the other pages may have refused it.</p>";
    std::string page = aircraft.toHtml(std::string(commonStyle));
    const std::size_t body = page.find("<body>");
    return page.insert(body == std::string::npos ? 0 : body + 6, note);
}

HttpAnswer aircraftAnswer(const LiveSite::State& state, const std::string& digits,
                          std::string_view kind) {
    const auto found =
        std::find_if(state.aircraft.begin(), state.aircraft.end(), [&](const TrackedAircraft& one) {
            return hex24(one.icaoAddress()) == digits;
        });
    if (found == state.aircraft.end()) {
        return notFound("aircraft " + digits + " is not in the table\n");
    }
    if (kind == "report") {
        return answerOf(reportPage(*found), html);
    }
    const Page page =
        aircraftPage(*found, state.showing, state.history,
                     " " + link(digits + ".report", "Report of the library, unchecked"));
    return answerOf(kind == "html" ? wholePage(page, liveHead) : page.body, html);
}

HttpAnswer pageAnswer(const LiveSite::State& state, const std::string& path) {
    if (path == "/live.js") {
        return answerOf(std::string(liveScript), script);
    }
    if (path == "/status") {
        return answerOf(state.status, json);
    }
    if (path == "/data/aircraft.json") {
        return answerOf(aircraftMapJson(state.aircraft, state.showing, state.messages), json);
    }
    if (path == "/data/receiver.json") {
        return answerOf(receiverMapJson(state.showing.receiver), json);
    }
    if (path == "/" || path == "/index.html" || path == "/index.body") {
        const Page page = indexPage({state.name, state.showing, state.aircraft, state.history});
        return answerOf(path == "/index.body" ? page.body : wholePage(page, liveHead), html);
    }
    const std::string kind = path.size() > dot && path[dot] == '.' ? path.substr(dot + 1) : "";
    if (kind == "html" || kind == "body" || kind == "report") {
        return aircraftAnswer(state, path.substr(1, dot - 1), kind);
    }
    return notFound("there is nothing here; the table of aircraft is at /\n");
}

} // namespace

void LiveSite::show(std::shared_ptr<const State> state) {
    auto rendered = std::make_shared<Rendered>();
    rendered->state = std::move(state);
    const std::lock_guard<std::mutex> lock(_mutex);
    _current = std::move(rendered);
}

std::shared_ptr<LiveSite::Rendered> LiveSite::current() {
    const std::lock_guard<std::mutex> lock(_mutex);
    return _current;
}

HttpAnswer LiveSite::answer(const HttpRequest& request) {
    constexpr std::string_view data = "/data/";
    HttpAnswer answer = contentOf(request);
    if (request.path.compare(0, data.size(), data) == 0) {
        answer.allowedOrigin = _dataOrigin;
    }
    return answer;
}

HttpAnswer LiveSite::contentOf(const HttpRequest& request) {
    const std::shared_ptr<Rendered> rendered = current();
    if (!rendered) {
        return answerOf("not ready yet\n", HttpAnswer().type.c_str(), 503);
    }
    const std::lock_guard<std::mutex> lock(rendered->mutex);
    const std::string path = inCapitals(request.path);
    const auto made = rendered->plain.find(path);
    HttpAnswer answer =
        made != rendered->plain.end() ? made->second : pageAnswer(*rendered->state, path);
    if (answer.status != 200) {
        return answer; // not kept: there are any number of such paths
    }
    rendered->plain.emplace(path, answer);
    if (!request.takesGzip || !canPack()) {
        return answer;
    }
    HttpAnswer& packed = rendered->packed[path];
    if (!packed.body) {
        packed = answer;
        packed.body = std::make_shared<const std::string>(gzip(*answer.body));
        packed.isPacked = true;
    }
    return packed;
}

} // namespace tolvarin::ondrel::client
