// How objects get from one process to another.
#pragma once

#include <string>

#include "platform/automation/automation.h"

namespace juntora::automation {

/// What an object is on the bus.
struct ObjectAddress {
    std::string owner;  ///< The bus name of its process.
    std::string path;   ///< Where it is there.
};

/// Processes, here, are their unique names on the bus.
class ObjectRoad {
public:
    virtual ~ObjectRoad() = default;

    /// The address for a message to `receiver`, who gets a reference: of an object of this process
    /// now, of another's by `announce`. False where the receiver can hold nothing.
    virtual bool give(IDispatch* object, const std::string& receiver, ObjectAddress* address) = 0;
    /// To be called before the message goes.
    virtual void announce(IDispatch* object, const std::string& receiver) = 0;
    /// The message does not go after all.
    virtual void takeBack(IDispatch* object, const std::string& receiver) = 0;

    /// The object that `sender` has sent with a reference for this process; with one for the
    /// caller. Null for one that is not there.
    virtual IDispatch* take(const ObjectAddress& address, const std::string& sender) = 0;
};

}  // namespace juntora::automation
