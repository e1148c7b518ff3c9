#include "platform/FolderListing.hpp"
#include "platform/LinkStatus.hpp"

namespace tindrel {
namespace fs = std::filesystem;

void listFolder(const fs::path& folder,
                const std::function<void(NativeView name, fs::file_type type)>& visit,
                std::error_code& error) {
    for (fs::directory_iterator it(folder, error), end; !error && it != end; it.increment(error)) {
        std::error_code untold;
        const fs::file_status status = linkStatus(it->path(), untold);
        visit(it->path().filename().native(), untold ? fs::file_type::none : status.type());
    }
}

}  // namespace tindrel
