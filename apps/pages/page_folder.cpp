#include "apps/pages/page_folder.h"

#include "apps/common/failure.h"
#include "apps/common/file.h"
#include "apps/common/text.h"
#include "apps/pages/html_text.h"
#include "apps/pages/style_sheet.h"

#include <filesystem>
#include <string_view>
#include <system_error>
#include <utility>

namespace tolvarin::ondrel::client {

namespace {

constexpr const char* indexName = "index.html";

void writePage(const std::string& path, const std::string& page) {
    Output output(path);
    output << page;
    output.close();
}

/// Puts an addition behind the first occurrence of a mark, if there is one.
void insertBehind(std::string& page, std::string_view mark, std::string_view addition) {
    const std::size_t place = page.find(mark);
    if (place != std::string::npos) {
        page.insert(place + mark.size(), addition);
    }
}

} // namespace

PageFolder::PageFolder(std::string path) : _path(std::move(path)) {
    std::error_code error;
    std::filesystem::create_directories(_path, error);
    if (!error && !std::filesystem::is_directory(_path, error)) {
        error = std::make_error_code(std::errc::not_a_directory);
    }
    if (error) {
        throw Failure("cannot create " + _path + ": " + error.message());
    }
}

std::string PageFolder::indexPath() const {
    return pathOf(indexName);
}

void PageFolder::write(const IndexContents& contents) const {
    for (const ADSBTarget& aircraft : contents.aircraft) {
        writePage(pathOf(pageName(aircraft.icaoAddr())), aircraftPage(aircraft.report()));
    }
    writePage(indexPath(), indexPage(contents));
}

std::string aircraftPage(const ADSBTargetReport& report) {
    // Callsigns have letters, digits, blanks and question marks only: nothing to escape.
    std::string page = report.toHtml("\n" + styleSheet());
    insertBehind(page, "<head>\n",
                 "    <meta charset=\"utf-8\">\n"
                 "    <meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n");
    const std::string name = htmlText(hex24(report.icaoAddress()) + " " + report.callsign());
    insertBehind(page, "<body>\n",
                 R"(    <p class="back"><a href=")" + std::string(indexName) +
                     R"(">All aircraft</a> / )" + name + "</p>\n");
    return page;
}

} // namespace tolvarin::ondrel::client
