#pragma once

#include "host_Model.h"

/// What keeps the names right by which members refer to each other.

/// Renames a member, and in all others what names it.
void host_RenameMember(host_Member& member, const cow_String& name);

/// Takes a member out. One that others refer to raises omu_ValueErrorException with their names; a
/// step takes what was created in it along.
void host_RemoveMember(host_Member& member);

/// Raises omu_ValueErrorException unless the members of all kinds refer to each other alone: parts
/// to materials, loads to parts and to steps in order.
void host_CheckReferences(std::span<const mdl_Repository> members);
