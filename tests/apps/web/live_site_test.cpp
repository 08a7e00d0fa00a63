#include "apps/web/live_site.h"

#include "apps/json/map_json.h"
#include "apps/tracked_lines.h"
#include "apps/web/gzip.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <zlib.h>

namespace tolvarin::ondrel::client {

namespace {

std::string unpacked(const std::string& packed) {
    std::string text(100000, '\0');
    z_stream stream = {};
    inflateInit2(&stream, MAX_WBITS + 16);
    std::string source = packed;
    stream.next_in = reinterpret_cast<Bytef*>(source.data());
    stream.avail_in = static_cast<uInt>(source.size());
    stream.next_out = reinterpret_cast<Bytef*>(text.data());
    stream.avail_out = static_cast<uInt>(text.size());
    EXPECT_EQ(inflate(&stream, Z_FINISH), Z_STREAM_END);
    text.resize(stream.total_out);
    inflateEnd(&stream);
    return text;
}

std::shared_ptr<LiveSite::State> state() {
    const TrackedLines tracked(threeAircraft());
    return std::make_shared<LiveSite::State>(
        LiveSite::State{"a feed",
                        {tracked.tracking.now(), 1, GeoPoint{50, 8.5}},
                        tracked.tracking.aircraft(),
                        {},
                        "{}",
                        6});
}

bool has(const HttpAnswer& answer, const std::string& part) {
    return answer.body->find(part) != std::string::npos;
}

TEST(LiveSite, HasTheDocumentedPaths) {
    LiveSite site;
    EXPECT_EQ(site.answer({"/", false}).status, 503U);
    site.show(state());
    struct Row {
        const char* path;
        const char* type;
        const char* part;
    };
    for (const Row& row : {Row{"/", "text/html; charset=utf-8", "<script src=\"live.js\""},
                           Row{"/index.html", "text/html; charset=utf-8", "<noscript>"},
                           Row{"/index.body", "text/html; charset=utf-8", "<h1>Aircraft</h1>"},
                           Row{"/4840D6.html", "text/html; charset=utf-8", "4840D6.report"},
                           Row{"/4840D6.body", "text/html; charset=utf-8", "KLM1023"},
                           Row{"/4840D6.report", "text/html; charset=utf-8", "unchecked"},
                           Row{"/live.js", "text/javascript; charset=utf-8", "refresh"},
                           Row{"/status", "application/json", "{}"},
                           Row{"/data/aircraft.json", "application/json", "\"messages\":6"},
                           Row{"/data/receiver.json", "application/json", "\"refresh\":1000"}}) {
        const HttpAnswer answer = site.answer({row.path, false});
        EXPECT_EQ(answer.status, 200U) << row.path;
        EXPECT_EQ(answer.type, row.type);
        EXPECT_TRUE(has(answer, row.part)) << row.path;
        const HttpAnswer packed = site.answer({row.path, true});
        EXPECT_TRUE(packed.isPacked);
        EXPECT_EQ(unpacked(*packed.body), *answer.body);
    }
    EXPECT_FALSE(has(site.answer({"/index.body", false}), "<html"));
}

// The same as the files of --json-dir.
TEST(LiveSite, HasTheDataOfMapPages) {
    LiveSite site;
    const auto shown = state();
    site.show(shown);
    EXPECT_EQ(*site.answer({"/data/aircraft.json", false}).body,
              aircraftMapJson(shown->aircraft, shown->showing, 6));
    EXPECT_EQ(*site.answer({"/data/receiver.json", false}).body,
              receiverMapJson(GeoPoint{50, 8.5}));
}

TEST(LiveSite, AllowsAnOriginForItsDataAlone) {
    LiveSite site("https://map.example");
    for (const bool shown : {false, true}) {
        for (const char* path : {"/data/aircraft.json", "/data/receiver.json", "/data/x"}) {
            EXPECT_EQ(site.answer({path, shown}).allowedOrigin, "https://map.example") << path;
            EXPECT_EQ(LiveSite().answer({path, shown}).allowedOrigin, "") << path;
        }
        for (const char* path : {"/", "/index.body", "/status", "/live.js", "/4840D6.report",
                                 "/data", "/database/", "//data/aircraft.json", "/x"}) {
            EXPECT_EQ(site.answer({path, shown}).allowedOrigin, "") << path;
        }
        site.show(state());
    }
}

TEST(LiveSite, HasNothingElse) {
    LiveSite site;
    site.show(state());
    for (const char* path :
         {"", "x", ".", "/x", "/4840D7.html", "/4840D6.HTML", "/4840D6.htm", "/4840D6",
          "//etc/passwd", "/../4840D6.html", "/4840D6.html/", "/index.report", "/4840D6.html.body",
          "/data", "/data/", "/data/x.json", "/aircraft.json"}) {
        EXPECT_EQ(site.answer({path, true}).status, 404U) << path;
    }
}

// A page is made once for a state, whoever asks how often.
TEST(LiveSite, ShowsTheNewestState) {
    LiveSite site;
    site.show(state());
    const HttpAnswer first = site.answer({"/index.body", true});
    EXPECT_EQ(first.body, site.answer({"/index.body", true}).body);
    EXPECT_EQ(site.answer({"/4840D6.html", true}).body, site.answer({"/4840d6.html", true}).body);
    const auto later = state();
    later->aircraft.pop_back();
    site.show(later);
    EXPECT_TRUE(has(site.answer({"/index.body", false}), "2 aircraft in a feed"));
    EXPECT_EQ(site.answer({"/485020.body", false}).status, 404U);
}

} // namespace

} // namespace tolvarin::ondrel::client
