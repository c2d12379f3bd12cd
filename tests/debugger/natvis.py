# Run by GDB: reads the natvis file as Visual Studio would, as far as this file goes, and shows the variables of
# the subject with it. Every expression in it is evaluated by GDB on real objects, so that a member that does not
# exist, or an expression that is not C++, is an error.
import re
import xml.etree.ElementTree

import gdb

NAMESPACE = "{http://schemas.microsoft.com/vstudio/debugger/natvis/2010}"
MAX_LINES = 8

for setting in ("pagination off", "confirm off", "debuginfod enabled off", "disable-randomization off"):
    try:
        gdb.execute("set " + setting)
    except gdb.error:
        pass  # not every GDB has every setting

stop = gdb.Breakpoint("Stop")
stop.silent = True
gdb.execute("run")
gdb.selected_frame().older().select()
print("The views:")

views = {view.get("Name"): view for view in xml.etree.ElementTree.parse(NATVIS).getroot()}
used = set()


def view_of(value_type):
    """The view of a type or of the nearest base that has one."""
    value_type = value_type.strip_typedefs().unqualified()
    if value_type.name in views:
        return views[value_type.name]
    if value_type.code == gdb.TYPE_CODE_STRUCT:
        for field in value_type.fields():
            if field.is_base_class and view_of(field.type) is not None:
                return view_of(field.type)
    return None


def members_of(value_type):
    value_type = value_type.strip_typedefs()
    if value_type.code != gdb.TYPE_CODE_STRUCT:
        return set()
    members = set()
    for field in value_type.fields():
        members |= members_of(field.type) if field.is_base_class else {field.name}
    return members


class Object:
    def __init__(self, expression):
        self.expression = expression
        self.type = gdb.parse_and_eval(expression).type
        self.members = members_of(self.type)
        self.variables = set()

    def bound(self, expression):
        """The expression of a view as one of the subject's frame."""
        def replaced(match):
            word = match.group(0)
            if word in self.variables:
                return "$" + word
            return "(%s).%s" % (self.expression, word) if word in self.members else word
        return re.sub(r"[A-Za-z_]\w*", replaced, expression.replace("*this", "(%s)" % self.expression))

    def value(self, expression):
        return gdb.parse_and_eval(self.bound(expression))

    def holds(self, element):
        condition = element.get("Condition")
        return condition is None or bool(self.value(condition))

    def text(self, template):
        def shown(match):
            expression, _, form = match.group(1).partition(",")
            value = self.value(expression)
            if view_of(value.type) is not None:
                return describe("(%s)" % self.bound(expression))
            return {"": "%d", "x": "0x%02x", "X": "0x%08X"}[form] % int(value)
        return re.sub(r"\{([^}]*)\}", shown, template)


def describe(expression):
    subject = Object(expression)
    view = view_of(subject.type)
    for display in view.findall(NAMESPACE + "DisplayString"):
        if subject.holds(display):
            used.add(display)
            return subject.text(display.text)
    return "(no DisplayString holds)"


def item(subject, element):
    value = subject.value(element.text)
    name = subject.text(element.get("Name"))
    if view_of(value.type) is not None:
        return "%s: %s" % (name, describe("(%s)" % subject.bound(element.text)))
    return "%s: %d" % (name, int(value))


def run_loop(subject, loop, limit):
    lines = []
    while subject.holds(loop) and len(lines) < limit:
        for step in loop:
            if step.tag == NAMESPACE + "Break":
                if subject.holds(step):
                    return lines
            elif step.tag == NAMESPACE + "Item" and not subject.holds(step):
                continue
            elif step.tag == NAMESPACE + "Item":
                lines.append(item(subject, step))
            elif step.tag == NAMESPACE + "Exec":
                subject.value(step.text)
            else:
                raise gdb.GdbError("unexpected " + step.tag)
    return lines


def expand(expression):
    subject = Object(expression)
    lines = []
    for element in view_of(subject.type).findall(NAMESPACE + "Expand/*"):
        if element.tag == NAMESPACE + "Item":
            if subject.holds(element):
                lines.append(item(subject, element))
            continue
        for part in element:
            if part.tag == NAMESPACE + "Variable":
                gdb.set_convenience_variable(part.get("Name"), int(part.get("InitialValue")))
                subject.variables.add(part.get("Name"))
            elif part.tag == NAMESPACE + "Loop":
                lines += run_loop(subject, part, int(element.get("MaxItemsPerView")))
            elif subject.holds(part):
                lines.append(item(subject, part))
    return lines


for name in ("whole", "empty", "zeroLength", "pastTheEnd", "single", "many", "begin", "third", "end", "onSingle",
             "configuration", "bos", "success", "stall", "noText"):
    print("%s: %s" % (name, describe(name)))
    if view_of(gdb.parse_and_eval(name).type).find(NAMESPACE + "Expand") is not None:
        lines = expand(name)
        if len(lines) > MAX_LINES:
            lines[3:-2] = ["..."]
        for line in lines:
            print("  " + line)

agreeing = 0
statuses = gdb.parse_and_eval("statuses")["_M_elems"]
for index in range(statuses.type.strip_typedefs().range()[1] + 1):
    row = statuses[index]
    code = int(row["code"]) & 0xFFFFFFFF
    text = row["text"].string()
    expected = "0x%08X (no text)" % code if text == "(no text)" else text
    shown = describe("statuses._M_elems[%d].code" % index)
    if shown == expected:
        agreeing += 1
    else:
        print("The library has \"%s\" for 0x%08X, the view \"%s\"." % (expected, code, shown))
print("%d status codes agree" % agreeing)

# No line of the table is there for nothing.
for display in views["RETURN_CODE"].findall(NAMESPACE + "DisplayString"):
    if display not in used:
        print("No status code shows \"%s\"." % display.text)
