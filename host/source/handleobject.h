#ifndef HANDLEOBJECT_H
#define HANDLEOBJECT_H

/// What a handle stands for.
class HandleObject
{
public:
    HandleObject() = default;
    virtual ~HandleObject() = default;
    HandleObject(const HandleObject &) = delete;
    HandleObject &operator=(const HandleObject &) = delete;

    /// Called when the handle is closed; who still uses the object then keeps it alive.
    virtual void close() = 0;
};

#endif
