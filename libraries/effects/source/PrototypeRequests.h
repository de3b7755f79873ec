#pragma once

#include <cstddef>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace Tolen::Effects {

class Library;

/// The loading of classes that refer to each other.
///
/// A client's request for one class may load many, each inside the loading of the one that refers
/// to it. Until the outermost is through, this remembers which ones failed, so that none is tried
/// twice, and which ones came about inside of which, so that those that may refer to a class that
/// failed in the end go with it.
class PrototypeRequests {
public:
    /// A class of a library.
    using Class = std::pair<Library*, std::string>;

    /// Opens the loading of a class. Every Begin has its End.
    void Begin(const Class& loaded);

    /// Closes the loading that was opened last.
    /// @return the classes that were loaded inside of it and have to go, newest first: none unless
    ///         the loading failed
    std::vector<Class> End(bool good);

    /// Whether the loading of a class has failed within the outermost one that is open.
    bool HasFailed(const Class& asked) const { return _failed.count(asked) != 0; }

    /// How many are open.
    int GetDepth() const { return static_cast<int>(_open.size()); }

private:
    struct Open {
        Class loading;
        std::size_t firstInside; ///< in _loaded
    };

    std::vector<Open> _open;    ///< the outermost first
    std::vector<Class> _loaded; ///< since the outermost was opened, oldest first
    std::set<Class> _failed;    ///< looked up only, so that the order of addresses doesn't matter
};

} // namespace Tolen::Effects
