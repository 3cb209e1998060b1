#include "HelperKit/DeviceImage.h"

#include "Core/ContentHash.h"
#include "HelperKit/BlockRing.h"
#include "Platform/FileRights.h"
#include "Platform/GuardedFolder.h"
#include "Platform/SystemError.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <fmt/format.h>
#include <stdexcept>
#include <thread>

namespace vh::helper {

namespace {

constexpr size_t mostLogLines = 200;

PartialFile openImage(const std::string& path, uint32_t owner, int64_t bytes) {
    const std::filesystem::path destination(path);
    const FileRights rights(owner);
    CopyFolder folder(destination.parent_path().string());
    // Else a link would lead out of the folders in which an image may lie, with root's rights when root asks.
    if (GuardedFolder::open(folder.path()).status().identity != folder.at("."))
        throw std::runtime_error(folder.path() + " was moved");
    const std::string name = destination.filename().string();
    if (folder.at(name))
        throw std::runtime_error(path + " exists already");
    if (const int64_t free = folder.freeBytes(); free < bytes)
        throw std::runtime_error(
            fmt::format("{} has room for {} bytes, the disk holds {}", folder.path(), free, bytes));
    return folder.create(name, 0644);
}

/// Whether the disk itself is gone, and not one of its blocks bad.
bool isGone(const SystemError& error) {
    return error.code() == ENODEV || error.code() == ENXIO;
}

} // namespace

DeviceImage::DeviceImage(const DeviceJobSpec& spec, uint32_t owner)
    : spec_(spec), owner_(owner), disk_(std::in_place, spec.device),
      image_(openImage(spec.destination, owner, disk_->bytes())) {
    status_.bytesTotal = disk_->bytes();
}

DeviceImage::~DeviceImage() {
    close();
}

template <class Change>
void DeviceImage::change(Change what) {
    const std::lock_guard guard(mutex_);
    what(status_);
}

DeviceJobStatus DeviceImage::status() const {
    const std::lock_guard guard(mutex_);
    return status_;
}

void DeviceImage::log(const std::string& line) {
    change([&](DeviceJobStatus& status) {
        if (status.log.size() < mostLogLines)
            status.log.push_back(line);
    });
}

void DeviceImage::make(const CancelToken& cancel) {
    try {
        copy(cancel);
    } catch (const Cancelled&) {
        end(DeviceJobPhase::cancelled, {});
    } catch (const std::exception& error) {
        end(DeviceJobPhase::failed, error.what());
    }
}

void DeviceImage::copy(const CancelToken& cancel) {
    change([](DeviceJobStatus& status) { status.phase = DeviceJobPhase::copying; });
    log(fmt::format("{}: {} bytes to {}", spec_.device, disk_->bytes(), spec_.destination));
    ContentHash hash(HashAlgorithm::sha256);
    BlockRing ring;
    writeAndHash(ring, hash, cancel);
    finish(hash.hex());
}

void DeviceImage::writeAndHash(BlockRing& ring, ContentHash& hash, const CancelToken& cancel) {
    std::thread writer, hasher;
    std::exception_ptr failure;
    try {
        writer = std::thread([&] {
            std::optional<FileRights> rights; // so that it takes none of the space kept back for root
            ring.serve(0, [&](int64_t offset, std::string_view block) {
                if (!rights)
                    rights.emplace(owner_);
                image_->writeAt(offset, block);
                change([&](DeviceJobStatus& status) {
                    status.bytesDone = offset + static_cast<int64_t>(block.size());
                });
            });
        });
        hasher =
            std::thread([&] { ring.serve(1, [&](int64_t, std::string_view block) { hash.update(block); }); });
        readAll(ring, cancel);
    } catch (...) {
        failure = std::current_exception();
    }
    ring.close();
    for (std::thread* reader : {&writer, &hasher})
        if (reader->joinable())
            reader->join();
    if (failure)
        std::rethrow_exception(failure);
    ring.rethrow();
}

void DeviceImage::readAll(BlockRing& ring, const CancelToken& cancel) {
    for (int64_t offset = 0; offset < disk_->bytes();) {
        cancel.throwIfCancelled();
        const std::span<char> block = ring.toFill();
        if (block.empty())
            return;
        const size_t got = readBlock(offset, block, cancel);
        ring.filled(got);
        offset += static_cast<int64_t>(got);
    }
}

size_t DeviceImage::readBlock(int64_t offset, std::span<char> block, const CancelToken& cancel) {
    block = block.first(
        static_cast<size_t>(std::min(static_cast<int64_t>(block.size()), disk_->bytes() - offset)));
    disk_->forgetUpTo(offset);
    try {
        readWhole(offset, block);
    } catch (const SystemError& error) {
        if (isGone(error))
            throw;
        readAroundBadBlocks(offset, block, cancel);
    }
    return block.size();
}

void DeviceImage::readAroundBadBlocks(int64_t offset, std::span<char> block, const CancelToken& cancel) {
    for (size_t at = 0; at < block.size(); at += badBlockBytes) {
        cancel.throwIfCancelled(); // each may take the disk many seconds
        const std::span<char> piece = block.subspan(at, std::min(badBlockBytes, block.size() - at));
        const int64_t where = offset + static_cast<int64_t>(at);
        try {
            readWhole(where, piece);
        } catch (const SystemError& error) {
            if (isGone(error))
                throw;
            log(fmt::format("Not readable, zeros in its place: {} bytes at {} ({})", piece.size(), where,
                            error.reason()));
            std::ranges::fill(piece, '\0');
            change([](DeviceJobStatus& status) { ++status.badBlocks; });
        }
    }
}

/// Of a disk that was pulled out, the kernel says that it ends here.
void DeviceImage::readWhole(int64_t offset, std::span<char> piece) {
    if (disk_->readAt(offset, piece) != piece.size())
        throw std::runtime_error(spec_.device + " is smaller than it says");
}

void DeviceImage::finish(std::string sha256) {
    change([](DeviceJobStatus& status) { status.phase = DeviceJobPhase::finishing; });
    image_->flush();
    {
        const FileRights rights(owner_);
        image_->place(PartialFile::Place::free);
    }
    close();
    log("SHA-256 " + sha256);
    change([&](DeviceJobStatus& status) {
        status.sha256 = std::move(sha256);
        status.phase = DeviceJobPhase::done;
    });
}

void DeviceImage::end(DeviceJobPhase phase, const std::string& error) {
    close();
    if (!error.empty())
        log(error);
    change([&](DeviceJobStatus& status) {
        status.phase = phase;
        status.error = error;
    });
}

/// Takes a partial image along.
void DeviceImage::close() {
    disk_.reset();
    std::optional<FileRights> rights;
    try {
        rights.emplace(owner_);
    } catch (const std::exception&) { // a user no more; the name goes from the folder all the same
    }
    image_.reset();
}

} // namespace vh::helper
