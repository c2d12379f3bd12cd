# Pretty-printers of GDB for usb_support: a range shows as a list of (offset, type, length), an iterator as
# (bytes left, type), a set with its descriptors, a status code as its text.
#
# GDB loads this file by itself when it is beside the library under the library's name with "-gdb.py" after
# it and its folder is in the auto-load safe path; else "source" loads it. Nothing here calls into the program.
# What it looks at may be uninitialised: memory that cannot be read and lengths that make no sense are shown
# as such.

import gdb
import gdb.printing

# A range is shown up to this number of descriptors; GDB's "print elements" may stop it earlier.
MAX_CHILDREN = 1000

DESCRIPTOR_TYPES = {
    0x01: "Device",
    0x02: "Configuration",
    0x03: "String",
    0x04: "Interface",
    0x05: "Endpoint",
    0x06: "Device Qualifier",
    0x07: "Other Speed Configuration",
    0x0B: "Interface Association",
    0x0F: "BOS",
    0x10: "BOS Capability",
    0x12: "eUSB2 Isochronous Endpoint Companion",
    0x21: "HID",
    0x24: "Class-Specific Interface",
    0x25: "Class-Specific Endpoint",
    0x29: "Hub",
    0x2A: "SuperSpeed Hub",
    0x30: "SuperSpeed Endpoint Companion",
    0x31: "SuperSpeedPlus Isochronous Endpoint Companion",
}

# The texts of failures, by bits 0 to 23 of the status code.
FAILURES = {
    0x0000: "Operation failed",
    0x1000: "Operation not implemented",
    0x1001: "Operation not supported",
    0x1002: "Access denied",
    0x1003: "Cannot open log",
    0x1004: "Log not open",
    0x1005: "Log write error",
    0x1006: "Destination buffer too small",
    0x1008: "Internal error: a Windows registry operation failed.",
    0x2000: "The host interface is invalid",
    0x3000: "Transfer type undefined",
    0x3001: "Invalid packet size",
    0x3002: "Invalid transfer type",
    0x3003: "Invalid option",
    0x3004: "Parameter can't change",
    0x3005: "Endpoint not found",
    0x3006: "Invalid response mode",
    0x3007: "Endpoint write error",
    0x3008: "Endpoint read error",
    0x3009: "Endpoint open error",
    0x300A: "Endpoint invalid max burst size",
    0x300B: "Endpoint invalid SuperSpeed multiplier size",
    0x300C: "Endpoint configuration failed",
    0x4000: "Transfer timeout",
    0x4001: "Transfer error",
    0x4002: "Missed microframe",
    0x4004: "Transfer hard error",
    0x4005: "Babble error",
    0x4007: "Data buffer hard error",
    0x4008: "Stall error",
    0x4009: "Transfer active",
    0x400A: "Transfer insufficient resources",
    0x400B: "Transfer insufficient data",
    0x400C: "The data returned in the transfer has an unexpected value",
    0x400D: "Transfer failed",
    0x400F: "A transfer did not respond with the expected status",
    0x5000: "System wait abandoned",
    0x5001: "System wait timeout",
    0x5002: "System wait error",
    0x6000: "Handshake 1 failed",
    0x6001: "Handshake 2 failed",
    0x6002: "Handshake 3 failed",
    0x6003: "Handshake 3 failed",
    0x7000: "Error getting a new Slot from Host Controller",
    0x7001: "Error allocating or initializing the Input Context for the Host controller",
    0x7002: "Error setting up Default Endpoint 0",
    0x7003: "Error Setting the address for the device via the xHCI Host Controller SetAddress Command",
    0x7004: "Error trying to get the port status",
    0x7005: "Port Status did not report a connected device",
    0x7006: "Memory allocation error",
    0x7007: "Host Initialization failed",
    0x7008: "A Port function failed",
    0x7009: "A device was not found.  Check that device is plugged into correct port",
    0x700A: 'Error performing "Evaluate Context" to change device parameters',
    0x700B: "Error getting hub descriptor during enumeration",
    0x700C: "Error getting device descriptor during enumeration",
    0x700D: "Error checking dev notification during enumeration",
    0x700E: "Link helper failure",
    0x700F: "Enumeration failure",
    0x8008: "Internal error: NULL pointer",
    0x8009: "Internal error: value out of range",
    0x800A: "Internal error: the pointer has an unexpected dynamic type",
    0x800B: "No downstream port",
    0x800C: "No downstream device",
    0x800D: "No upstream port",
    0x800E: "USB query failure",
    0x800F: "Procedure timeout",
    0x8010: "Procedure aborted by user",
    0x8011: "Incomplete procedure",
    0x8012: "Bad parameter",
    0x8013: "Bad port status",
    0x8014: "USB inconsistency",
    0x8015: "Compliance driver error",
    0x8016: "Incorrect driver version",
}


def type_name(descriptor_type):
    return DESCRIPTOR_TYPES.get(descriptor_type, "type 0x%02X" % descriptor_type)


def read_bytes(address, length):
    """The bytes at the address; None when they cannot be read."""
    if address == 0:
        return None
    try:
        return gdb.selected_inferior().read_memory(address, length).tobytes()
    except (gdb.error, OverflowError):
        return None


class Range:
    """The bytes of a range."""

    def __init__(self, value):
        try:
            self.address = int(value["bytes_"])
            self.length = int(value["length_"])
        except gdb.MemoryError:
            raise
        except gdb.error:
            self._read_without_members(value)

    def _read_without_members(self, value):
        # Only a library with debug information describes its classes. Without it, the two members are read at their
        # known place: after the pointer to the virtual table.
        if value.address is None:
            raise gdb.error("cannot be shown without debug information of the library")
        size = gdb.lookup_type("char").pointer().sizeof
        memory = gdb.selected_inferior().read_memory(int(value.address), 2 * size + 2).tobytes()
        self.address = int.from_bytes(memory[size:2 * size], "little")
        self.length = int.from_bytes(memory[2 * size:], "little")

    def descriptors(self):
        """(offset, description) for each descriptor, and for the fault that ends the chain of lengths."""
        offset = 0
        count = 0
        while offset < self.length:
            left = self.length - offset
            if count == MAX_CHILDREN:
                yield offset, "and more, %d bytes left" % left
                return
            header = read_bytes(self.address + offset, min(left, 2))
            if header is None:
                yield offset, "unreadable, %d bytes left" % left
                return
            length = header[0]
            if length == 0:
                yield offset, "zero length, %d bytes left" % left
                return
            if length > left:
                yield offset, "past the end, %d bytes left" % left
                return
            # A descriptor of one byte has no type.
            name = type_name(header[1]) if len(header) == 2 else "no type"
            yield offset, "%s, %d" % (name, length)
            offset += length
            count += 1


class RangePrinter:
    """CDescriptorRange and the descriptor sets, which are ranges."""

    def __init__(self, value):
        self.value = value

    def to_string(self):
        try:
            length = Range(self.value).length
        except gdb.error as error:
            return "%s <%s>" % (self.value.type.strip_typedefs().unqualified(), error)
        return "%s of %d bytes" % (self.value.type.strip_typedefs().unqualified(), length)

    def children(self):
        try:
            descriptors = Range(self.value).descriptors()
        except gdb.error:
            return
        for index, (offset, text) in enumerate(descriptors):
            yield "[%d]" % index, "(0x%x, %s)" % (offset, text)


class IteratorPrinter:
    def __init__(self, value):
        self.value = value

    def to_string(self):
        try:
            left = int(self.value["remaining_"])
            address = int(self.value["current_"])
        except gdb.error as error:
            return "<%s>" % error
        if left == 0:
            return "(0 left, end)"
        header = read_bytes(address, min(left, 2))
        if header is None:
            return "(%d left, unreadable)" % left
        return "(%d left, %s)" % (left, type_name(header[1]) if len(header) == 2 else "no type")


def status_text(code):
    """The text that GetStatusDetail gives; None for a failure without one."""
    if code & 0x80000000 == 0:
        return "Success (with warning)" if code & 0x40000000 else "Success"
    return FAILURES.get(code & 0x00FFFFFF)


class StatusPrinter:
    def __init__(self, value):
        self.value = value

    def to_string(self):
        try:
            code = int(self.value) & 0xFFFFFFFF
        except gdb.error as error:
            return "<%s>" % error
        return "0x%08X %s" % (code, status_text(code) or "(no text)")


def make_printers():
    printers = gdb.printing.RegexpCollectionPrettyPrinter("usb_support")
    printers.add_printer("range", "^CDescriptorRange$", RangePrinter)
    printers.add_printer("set", "^C(Compound)?DescriptorSet<.*>$", RangePrinter)
    printers.add_printer("named set", "^C(BOS|Config)DescriptorSet$", RangePrinter)
    printers.add_printer("iterator", "^CDescriptorRangeIterator$", IteratorPrinter)
    printers.add_printer("status", "^RETURN_CODE$", StatusPrinter)
    return printers


gdb.printing.register_pretty_printer(gdb.current_objfile(), make_printers(), replace=True)
