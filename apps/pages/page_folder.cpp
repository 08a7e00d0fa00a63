#include "apps/pages/page_folder.h"

#include "apps/common/failure.h"
#include "apps/common/file.h"
#include "apps/pages/aircraft_page.h"
#include "apps/pages/html.h"

#include <filesystem>
#include <string_view>
#include <system_error>
#include <utility>

namespace tolvarin::ondrel::client {

namespace {

void writePage(const std::string& path, std::string_view page) {
    Output output(path);
    output << page;
    output.close();
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
    return pathOf(std::string(indexName));
}

void PageFolder::write(const IndexContents& contents) const {
    for (const TrackedAircraft& aircraft : contents.aircraft) {
        writePage(pathOf(pageName(aircraft.icaoAddr())), aircraftPage(aircraft, contents.showing));
    }
    writePage(indexPath(), indexPage(contents));
}

} // namespace tolvarin::ondrel::client
