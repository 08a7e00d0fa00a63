#pragma once

#include "apps/pages/index_page.h"

#include <ondrel/adsb_target_report.h>

#include <string>

namespace tolvarin::ondrel::client {

/// A folder with an index and a page for each aircraft. Whatever the system refuses is a Failure
/// that names the file.
class PageFolder {
public:
    /// Creates the folder, if there is none.
    explicit PageFolder(std::string path);

    /// Writes all pages, over those that are there.
    void write(const IndexContents& contents) const;

    /// Where a browser starts.
    std::string indexPath() const;

private:
    std::string pathOf(const std::string& page) const { return _path + "/" + page; }

    std::string _path;
};

/// The library's page of one aircraft, made fit for narrow screens and with a way back to the
/// index.
std::string aircraftPage(const ADSBTargetReport& report);

} // namespace tolvarin::ondrel::client
