#pragma once
/// Handles of a producer. A handle is a number that is never used twice and no address,
/// so that an old handle is always recognised.

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <type_traits>
#include <typeinfo>
#include <vector>

#include "framework/Failure.h"

namespace OvProducer {

class Event;
class PortObject;

/// An object that has a handle.
class Object {
public:
    Object() = default;
    Object(const Object&) = delete;
    Object& operator=(const Object&) = delete;
    virtual ~Object() = default;

    /// Null until the object was added to the table.
    void* Handle() const { return m_handle; }

    /// The object as one of the abstract kinds that frames and features ask for; null if it is
    /// of another. A dynamic cast would take longer than the rest of a look-up.
    ///@{
    virtual Event* AsEvent() { return nullptr; }
    virtual PortObject* AsPortObject() { return nullptr; }
    ///@}

private:
    friend class HandleTable;
    void* m_handle = nullptr;
    std::shared_ptr<const void> m_owner;
};

/// All valid handles. An object that a call uses lives until the end of the call, even if
/// another thread closes it meanwhile.
///
/// Each handle has a place with a lock of its own, so that calls on different modules don't
/// wait for one another. Places are neither moved nor freed as long as the table exists: a
/// call finds the place of its handle without a lock.
class HandleTable {
public:
    /// All handles are multiples of it.
    static constexpr uintptr_t kStep = 16;

    HandleTable() = default;
    HandleTable(const HandleTable&) = delete;
    HandleTable& operator=(const HandleTable&) = delete;

    /// Adds the object and returns its handle. Must be called before other threads know
    /// the object.
    /// @param owner  lives at least as long as the object from now on; null for none
    void* Add(const std::shared_ptr<Object>& object, std::shared_ptr<const void> owner = nullptr);
    /// Removes the handle. Does nothing for an unknown one.
    void Remove(const void* handle);
    /// Removes the handles of all objects of the owner.
    void RemoveAllOf(const void* owner);

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
    /// Has a cache line of its own, because other threads use its neighbours.
    struct alignas(64) Place {
        std::mutex mutex;
        const void* handle = nullptr;  ///< null while no object is here
        std::shared_ptr<Object> object;
    };

    // Each block has twice as many places as the one before it.
    static constexpr size_t kFirstBlock = 64;
    static constexpr size_t kBlocks = 14;
    static constexpr size_t kPlaces = kFirstBlock * ((size_t{1} << kBlocks) - 1);

    /// Null if the place doesn't exist yet.
    Place* PlaceAt(size_t index) const;
    Place* PlaceOf(const void* handle) const;
    size_t TakeFree();
    void AddBlock();
    /// To be called with both locks held. The caller lets the object go after them.
    std::shared_ptr<Object> Vacate(Place& place, size_t index);
    std::shared_ptr<Object> Find(const void* handle) const;

    /// Most objects are exactly of the type that is wanted, or have an answer of their own.
    /// Both are found out faster than by a dynamic cast.
    template <typename T>
    static std::shared_ptr<T> As(std::shared_ptr<Object>&& object) {
        Object* const known = object.get();
        if constexpr (std::is_same_v<T, Event>) {
            return Aliased(std::move(object), known == nullptr ? nullptr : known->AsEvent());
        } else if constexpr (std::is_same_v<T, PortObject>) {
            return Aliased(std::move(object), known == nullptr ? nullptr : known->AsPortObject());
        } else {
            if (known != nullptr && typeid(*known) == typeid(T)) {
                return std::static_pointer_cast<T>(std::move(object));
            }
            return std::dynamic_pointer_cast<T>(std::move(object));
        }
    }
    template <typename T>
    static std::shared_ptr<T> Aliased(std::shared_ptr<Object>&& object, T* kind) {
        return kind == nullptr ? nullptr : std::shared_ptr<T>(std::move(object), kind);
    }

    std::array<std::atomic<Place*>, kBlocks> m_blocks{};
    std::mutex m_mutex;  // guards what follows, which look-ups don't need
    std::vector<std::unique_ptr<Place[]>> m_owned;
    std::vector<size_t> m_free;  ///< indices of places that were used before
    size_t m_used = 0;           ///< how many places were ever used: the first ones
};

}  // namespace OvProducer
