#pragma once
/// Handles of a producer. A handle is a number that is never given twice, so
/// that a stale one is told from a live one for sure and is never followed.

#include <cstdint>
#include <memory>
#include <mutex>
#include <typeinfo>
#include <unordered_map>

#include "framework/Failure.h"

namespace OvProducer {

/// Whatever a handle can stand for.
class Object {
public:
    Object() = default;
    Object(const Object&) = delete;
    Object& operator=(const Object&) = delete;
    virtual ~Object() = default;

    /// Null until the object is entered into the table.
    void* Handle() const { return m_handle; }

private:
    friend class HandleTable;
    void* m_handle = nullptr;
};

/// All live handles. An object that a call works on stays alive for the call,
/// also when another thread closes it meanwhile.
class HandleTable {
public:
    /// Between a handle and the next one.
    static constexpr uintptr_t kStep = 16;

    /// Gives the object its handle; done before other threads know the object.
    void* Add(const std::shared_ptr<Object>& object);
    /// Voids the handle; unknown ones are ignored.
    void Remove(const void* handle);

    /// The object behind the handle; -1006 when it is null, stale or of
    /// another kind.
    template <typename T>
    std::shared_ptr<T> Get(const void* handle) const {
        std::shared_ptr<T> object = As<T>(Find(handle));
        if (!object) {
            throw Failure(GenTL::GC_ERR_INVALID_HANDLE, "The handle is invalid");
        }
        return object;
    }

private:
    std::shared_ptr<Object> Find(const void* handle) const;

    /// Most objects are of the very kind that is asked for, which is told at once.
    template <typename T>
    static std::shared_ptr<T> As(std::shared_ptr<Object>&& object) {
        const Object* const known = object.get();
        if (known != nullptr && typeid(*known) == typeid(T)) {
            return std::static_pointer_cast<T>(std::move(object));
        }
        return std::dynamic_pointer_cast<T>(std::move(object));
    }

    // Held for a look only: a lock of readers and writers costs more than that.
    mutable std::mutex m_mutex;
    std::unordered_map<const void*, std::shared_ptr<Object>> m_objects;
};

}  // namespace OvProducer
