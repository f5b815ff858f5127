// IObject: the root of every class that the type registry can create.
#include "IObject.h"

IObject::~IObject() = default;

// The root has no base and cannot be created on its own.
const XbRTTI IObject::RTTI(L"IObject", nullptr, nullptr, XbRTTI::InstanceTestOf<IObject>());
static const XbRTTIRegistrar s_objectRegistrar(IObject::RTTI);
