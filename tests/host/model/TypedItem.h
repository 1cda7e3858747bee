#pragma once

#include "host/model/CModelElement.h"

/// A model element of a given type and id.
class TypedItem : public CModelElement
{
public:
    explicit TypedItem(int itemType, LONGID itemId = 0) : type(itemType) { setId(itemId); }

    int getType() const override { return type; }

private:
    int type;
};
