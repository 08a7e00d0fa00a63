#include "apps/pages/page_folder.h"

#include "apps/common/failure.h"
#include "apps/common/file.h"
#include "apps/pages/aircraft_page.h"
#include "apps/pages/html.h"

#include <cstddef>
#include <filesystem>
#include <set>
#include <system_error>
#include <vector>

namespace tolvarin::ondrel::client {

namespace {

namespace fs = std::filesystem;

/// Whether a page of this or another run may have that name.
bool isPageName(std::string_view name) {
    return name == indexName || (name.size() == 11 && name.substr(6) == ".html" &&
                                 name.find_first_not_of("0123456789ABCDEF") == 6);
}

/// The head of each page has the tag. A link is not followed, even if it leads to a page.
bool isMadeHere(const std::string& path) {
    constexpr std::size_t headSize = 512;
    return startOfFile(path, headSize).find(generatorTag) != std::string::npos;
}

void removeFile(const std::string& path) {
    std::error_code error;
    fs::remove(path, error);
    if (error) {
        throw Failure("cannot remove " + path + ": " + error.message());
    }
}

} // namespace

PageFolder::PageFolder(std::string path, bool force) : _path(std::move(path)), _force(force) {
    createFolder(_path);
    for (const std::string& name : namesIn(_path)) {
        if (isPageName(name)) {
            checkReplaceable(name);
        }
    }
}

std::string PageFolder::indexPath() const {
    return pathOf(indexName);
}

void PageFolder::checkReplaceable(const std::string& page) const {
    const std::string path = pathOf(page);
    std::error_code error;
    const fs::file_status status = fs::symlink_status(path, error);
    if (fs::is_directory(status)) {
        throw Failure("cannot write " + path +
                      ": it is a directory; move it away or choose another folder");
    }
    if (fs::exists(status) && !_force && !isMadeHere(path)) {
        throw Failure("will not replace " + path +
                      ", which ondrel did not make; choose another folder, or replace it with "
                      "--force");
    }
}

void PageFolder::replace(const std::string& page, std::string_view text) const {
    checkReplaceable(page);
    replaceFile(pathOf(page), text);
}

void PageFolder::write(const IndexContents& contents, std::string_view head) const {
    std::set<std::string> written = {std::string(indexName)};
    for (const TrackedAircraft& aircraft : contents.aircraft) {
        const std::string page = pageName(aircraft.icaoAddress());
        replace(page, wholePage(aircraftPage(aircraft, contents.showing, contents.history), head));
        written.insert(page);
    }
    replace(std::string(indexName), wholePage(indexPage(contents), head));
    for (const std::string& name : namesIn(_path)) {
        if (isPageName(name) && written.count(name) == 0 && isMadeHere(pathOf(name))) {
            removeFile(pathOf(name));
        }
    }
}

} // namespace tolvarin::ondrel::client
