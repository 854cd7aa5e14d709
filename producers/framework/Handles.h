#pragma once
/// Handles of a producer. A handle is a number that is never used twice and no address,
/// so that an old handle is always recognised.

#include <cstdint>
#include <memory>
#include <mutex>
#include <typeinfo>
#include <unordered_map>

#include "framework/Failure.h"

namespace OvProducer {

/// An object that has a handle.
class Object {
public:
    Object() = default;
    Object(const Object&) = delete;
    Object& operator=(const Object&) = delete;
    virtual ~Object() = default;

    /// Null until the object was added to the table.
    void* Handle() const { return m_handle; }

private:
    friend class HandleTable;
    void* m_handle = nullptr;
};

/// All valid handles. An object that a call uses lives until the end of the call, even if
/// another thread closes it meanwhile.
class HandleTable {
public:
    /// Difference between a handle and the next one.
    static constexpr uintptr_t kStep = 16;

    /// Adds the object and returns its handle. Must be called before other threads know
    /// the object.
    void* Add(const std::shared_ptr<Object>& object);
    /// Removes the handle. Does nothing for an unknown one.
    void Remove(const void* handle);

    /// Returns the object of the handle. Fails with -1006 if the handle is null, old or
    /// that of another kind of object.
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

    /// Most objects are exactly of the type that is wanted, which is found out faster
    /// than by a dynamic cast.
    template <typename T>
    static std::shared_ptr<T> As(std::shared_ptr<Object>&& object) {
        const Object* const known = object.get();
        if (known != nullptr && typeid(*known) == typeid(T)) {
            return std::static_pointer_cast<T>(std::move(object));
        }
        return std::dynamic_pointer_cast<T>(std::move(object));
    }

    // Held only for a look-up, which is shorter than the overhead of a shared mutex.
    mutable std::mutex m_mutex;
    std::unordered_map<const void*, std::shared_ptr<Object>> m_objects;
};

}  // namespace OvProducer
