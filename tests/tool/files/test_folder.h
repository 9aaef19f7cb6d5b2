#pragma once

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

namespace orv::cli {

/// A folder that goes with all it holds.
class TestFolder {
  public:
    TestFolder() {
        std::string name =
            (std::filesystem::temp_directory_path() / "orv-test-XXXXXX").string();
        path_ = mkdtemp(name.data());
    }
    ~TestFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    TestFolder(const TestFolder&) = delete;
    TestFolder& operator=(const TestFolder&) = delete;

    /// The path of a name in it.
    std::string at(std::string_view name) const { return path_ + "/" + std::string(name); }

    /// Makes a file, and the folders above it.
    std::string file(std::string_view name, std::string_view text = "") const {
        const std::filesystem::path path = at(name);
        std::filesystem::create_directories(path.parent_path());
        std::ofstream(path, std::ios::binary) << text;
        return path.string();
    }

    /// All files and folders in it, with their paths below it, sorted.
    std::vector<std::string> names() const {
        std::vector<std::string> found;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(path_)) {
            found.push_back(below(entry.path().string()));
        }
        std::sort(found.begin(), found.end());
        return found;
    }

    /// A path below it.
    std::string below(const std::string& path) const { return path.substr(path_.size() + 1); }

  private:
    std::string path_;
};

/// The text of a file.
inline std::string textOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

}  // namespace orv::cli
