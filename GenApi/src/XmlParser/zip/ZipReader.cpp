// Reads the first entry of a zip archive with one of two libraries, whichever a system has.
// Cameras keep their descriptions zipped, with one entry.

#include "zip/ZipReader.h"

#include <cstring>
#include <vector>

#include "nodes/DescriptionLimits.h"

#if OV_HAVE_MINIZ
#include <miniz.h>
#else
#include <zip.h>

#include <filesystem>
#include <system_error>
#endif

namespace GenApi_3_0_ORVANE {

#if OV_HAVE_MINIZ

/// Owns the library's archive.
struct CZipReader::Archive {
    mz_zip_archive zip{};
    bool isOpen = false;

    ~Archive() {
        if (isOpen) {
            mz_zip_reader_end(&zip);
        }
    }
    bool Extract(char* buffer, size_t size) {
        return mz_zip_reader_extract_to_mem_no_alloc(&zip, 0, buffer, size, 0, nullptr, 0) !=
               MZ_FALSE;
    }
};

bool CZipReader::OpenFile(const std::string& fileName) {
    m_pArchive->isOpen = mz_zip_reader_init_file(&m_pArchive->zip, fileName.c_str(), 0) != MZ_FALSE;
    return m_pArchive->isOpen;
}

bool CZipReader::OpenMemory(const void* data, size_t size) {
    m_pArchive->isOpen = mz_zip_reader_init_mem(&m_pArchive->zip, data, size, 0) != MZ_FALSE;
    return m_pArchive->isOpen;
}

bool CZipReader::FindFirstEntry() {
    mz_zip_archive_file_stat entry{};
    if (mz_zip_reader_file_stat(&m_pArchive->zip, 0, &entry) == MZ_FALSE) {
        return false;
    }
    m_Size = static_cast<size_t>(entry.m_uncomp_size);
    return true;
}

#else

/// Owns the library's archive, which is only read and so never written back.
struct CZipReader::Archive {
    zip_t* zip = nullptr;

    ~Archive() {
        if (zip != nullptr) {
            zip_discard(zip);
        }
    }
    bool Extract(char* buffer, size_t size) const {
        zip_file_t* const file = zip_fopen_index(zip, 0, 0);
        if (file == nullptr) {
            return false;
        }
        const zip_int64_t count = zip_fread(file, buffer, size);
        // The library compares the checksum when it meets the end of the entry, so one
        // byte more than there should be is asked for. It reports a bad one there or on
        // closing.
        char beyond = 0;
        const bool isWhole =
            count == static_cast<zip_int64_t>(size) && zip_fread(file, &beyond, 1) == 0;
        return zip_fclose(file) == 0 && isWhole;
    }
};

bool CZipReader::OpenFile(const std::string& fileName) {
    std::error_code ignored;
    if (std::filesystem::file_size(fileName, ignored) == 0) {
        return false;  // the library takes it for an archive without entries
    }
    m_pArchive->zip = zip_open(fileName.c_str(), ZIP_RDONLY, nullptr);
    return m_pArchive->zip != nullptr;
}

/// The library takes the source over only if it can open it.
bool CZipReader::OpenMemory(const void* data, size_t size) {
    if (size == 0) {
        return false;  // as for a file
    }
    zip_source_t* const source = zip_source_buffer_create(data, size, 0, nullptr);
    if (source == nullptr) {
        return false;
    }
    m_pArchive->zip = zip_open_from_source(source, ZIP_RDONLY, nullptr);
    if (m_pArchive->zip == nullptr) {
        zip_source_free(source);
    }
    return m_pArchive->zip != nullptr;
}

bool CZipReader::FindFirstEntry() {
    zip_stat_t entry;
    zip_stat_init(&entry);
    if (zip_stat_index(m_pArchive->zip, 0, 0, &entry) != 0 || (entry.valid & ZIP_STAT_SIZE) == 0) {
        return false;
    }
    m_Size = static_cast<size_t>(entry.size);
    return true;
}

#endif

CZipReader::CZipReader() : m_pArchive(std::make_unique<Archive>()) {}
CZipReader::~CZipReader() = default;

CZipReader::Result CZipReader::ReadFile(const std::string& fileName, std::string& text) {
    CZipReader zip;
    return zip.OpenFile(fileName) ? zip.ReadFirstEntry(text) : Result::NotOpened;
}

CZipReader::Result CZipReader::ReadMemory(const void* data, size_t size, std::string& text) {
    CZipReader zip;
    return zip.OpenMemory(data, size) ? zip.ReadFirstEntry(text) : Result::NotOpened;
}

/// The three failures have texts of their own.
CZipReader::Result CZipReader::ReadFirstEntry(std::string& text) {
    if (!FindFirstEntry()) {
        return Result::NoEntry;
    }
    return Extract(text) ? Result::Done : Result::NotExtracted;
}

/// The size is what the archive claims, so it is bounded before memory is taken. The text ends at
/// a zero byte, which no XML document holds.
bool CZipReader::Extract(std::string& text) {
    if (m_Size > kMaxUnpackedBytes) {
        return false;
    }
    std::vector<char> buffer(m_Size + 1, '\0');
    if (!m_pArchive->Extract(buffer.data(), m_Size)) {
        return false;
    }
    text.assign(buffer.data(), strnlen(buffer.data(), m_Size));
    return true;
}

}  // namespace GenApi_3_0_ORVANE
