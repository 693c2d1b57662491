// Owning an Objective-C object from C++. For Objective-C++ only.
#pragma once

#import <Foundation/Foundation.h>

#include <utility>

namespace kestrin::desktop {

/// Keeps one object alive, or none, with automatic reference counting and without it.
template <typename Object>
class ObjectReference {
  public:
    ObjectReference() = default;
    explicit ObjectReference(Object object) : m_object(retained(object)) {}
    ObjectReference(const ObjectReference &) = delete;
    ObjectReference &operator=(const ObjectReference &) = delete;
    ~ObjectReference() { release(m_object); }

    Object get() const { return m_object; }
    void reset(Object object) { release(std::exchange(m_object, retained(object))); }

  private:
#if __has_feature(objc_arc)
    static Object retained(Object object) {
        return object;
    }
    static void release(Object) {}
#else
    static Object retained(Object object) {
        return [object retain];
    }
    static void release(Object object) {
        [object release];
    }
#endif

    Object m_object = nil;
};

/// Leaves to the autorelease pool what `alloc` gave, which automatic reference counting does by itself.
template <typename Object>
Object autoreleased(Object object) {
#if __has_feature(objc_arc)
    return object;
#else
    return [object autorelease];
#endif
}

} // namespace kestrin::desktop
