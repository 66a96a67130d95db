#pragma once

// Ownership of a COM reference: released when its owner goes.

#include <memory>

struct ComRelease
{
    template <class Interface>
    void operator()(Interface *object) const
    {
        object->Release();
    }
};

template <class Interface>
using ComOwner = std::unique_ptr<Interface, ComRelease>;
