#pragma once

#include "Tools/FastCopy/CopyDestination.h"
#include "Tools/FastCopy/CopyLanes.h"
#include "Tools/FastCopy/CopyRun.h"
#include "Tools/FastCopy/CopySources.h"

#include <memory>
#include <string>
#include <vector>

namespace vh::copy {

/// Copies folders and small files, many of them at a time: while all destinations write one batch, the next one is read.
class SmallFiles {
public:
    /// Larger files are streamed.
    static constexpr int64_t largest = 256 << 10;

    SmallFiles(CopyRun& run, CopySources& sources,
               std::vector<std::unique_ptr<CopyDestination>>& destinations, CopyLanes& lanes);
    ~SmallFiles();

    /// Reads the item and copies it, sooner or later, to these destinations; items stay in order.
    void add(size_t item, const std::vector<size_t>& takers);
    /// Returns when all is copied and booked.
    void finish();

private:
    struct Batch;
    void read(size_t item);
    void begin();
    void book();
    void bookEntry(size_t index);

    CopyRun& run_;
    CopySources& sources_;
    std::vector<std::unique_ptr<CopyDestination>>& destinations_;
    CopyLanes& lanes_;
    std::unique_ptr<Batch> filling_, writing_;
};

} // namespace vh::copy
