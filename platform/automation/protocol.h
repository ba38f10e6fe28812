// What automation is on the bus: the interfaces by which processes of this layer, or any others,
// make objects and call them by name or number.
#pragma once

namespace juntora::automation {

/// At a class's own path (its bus name with "/" for "."): CreateInstance() -> ((ss) object): its
/// owner and path, with one reference for the caller.
inline constexpr char CLASS_INTERFACE[] = "juntora.Class";

/// At an object's path, for those who hold a reference to it:
///   GetIDOfName(s name) -> i            QueryInterface(s iid) -> b
///   Invoke(i id, u flags, av arguments) -> (v result, av arguments as they are now)
///   Share(s name of another process)    Release()
inline constexpr char OBJECT_INTERFACE[] = "juntora.Object";

}  // namespace juntora::automation
