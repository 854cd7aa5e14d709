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

#include "zip/LateLibrary.h"
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

namespace {

#define OV_ZIP_FUNCTIONS(FUNCTION)     \
    FUNCTION(zip_discard)              \
    FUNCTION(zip_fclose)               \
    FUNCTION(zip_fopen_index)          \
    FUNCTION(zip_fread)                \
    FUNCTION(zip_open)                 \
    FUNCTION(zip_open_from_source)     \
    FUNCTION(zip_source_buffer_create) \
    FUNCTION(zip_source_free)          \
    FUNCTION(zip_stat_index)           \
    FUNCTION(zip_stat_init)

/// The functions of the library. With it come others, of ciphers and of compression, which take
/// longer to load than all that cameras need, and most cameras' descriptions come to the parser
/// unpacked: so it's loaded with the first archive.
struct LoadedZip {
    LoadedZip() {
        const CLateLibrary library(OV_LIBZIP_FILE);
#define OV_ZIP_FIND(name) library.Find(#name, name);
        OV_ZIP_FUNCTIONS(OV_ZIP_FIND)
#undef OV_ZIP_FIND
    }
#define OV_ZIP_MEMBER(name) decltype(&::name) name;
    OV_ZIP_FUNCTIONS(OV_ZIP_MEMBER)
#undef OV_ZIP_MEMBER
};
#undef OV_ZIP_FUNCTIONS

const LoadedZip& Zip() {
    static const LoadedZip zip;
    return zip;
}

}  // namespace

/// Owns the library's archive, which is only read and so never written back.
struct CZipReader::Archive {
    zip_t* zip = nullptr;

    ~Archive() {
        if (zip != nullptr) {
            Zip().zip_discard(zip);
        }
    }
    bool Extract(char* buffer, size_t size) const {
        zip_file_t* const file = Zip().zip_fopen_index(zip, 0, 0);
        if (file == nullptr) {
            return false;
        }
        const zip_int64_t count = Zip().zip_fread(file, buffer, size);
        // The library compares the checksum when it meets the end of the entry, so one
        // byte more than there should be is asked for. It reports a bad one there or on
        // closing.
        char beyond = 0;
        const bool isWhole =
            count == static_cast<zip_int64_t>(size) && Zip().zip_fread(file, &beyond, 1) == 0;
        return Zip().zip_fclose(file) == 0 && isWhole;
    }
};

bool CZipReader::OpenFile(const std::string& fileName) {
    std::error_code ignored;
    if (std::filesystem::file_size(fileName, ignored) == 0) {
        return false;  // the library takes it for an archive without entries
    }
    m_pArchive->zip = Zip().zip_open(fileName.c_str(), ZIP_RDONLY, nullptr);
    return m_pArchive->zip != nullptr;
}

/// The library takes the source over only if it can open it.
bool CZipReader::OpenMemory(const void* data, size_t size) {
    if (size == 0) {
        return false;  // as for a file
    }
    zip_source_t* const source = Zip().zip_source_buffer_create(data, size, 0, nullptr);
    if (source == nullptr) {
        return false;
    }
    m_pArchive->zip = Zip().zip_open_from_source(source, ZIP_RDONLY, nullptr);
    if (m_pArchive->zip == nullptr) {
        Zip().zip_source_free(source);
    }
    return m_pArchive->zip != nullptr;
}

bool CZipReader::FindFirstEntry() {
    zip_stat_t entry;
    Zip().zip_stat_init(&entry);
    if (Zip().zip_stat_index(m_pArchive->zip, 0, 0, &entry) != 0 ||
        (entry.valid & ZIP_STAT_SIZE) == 0) {
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
