# Run by GDB: shows the variables of the subject with the pretty-printers, and compares every status code.
import re

import gdb

for setting in ("pagination off", "confirm off", "print pretty on", "print elements 0", "debuginfod enabled off",
                "disable-randomization off"):
    try:
        gdb.execute("set " + setting)
    except gdb.error:
        pass  # not every GDB has every setting

if PRINTERS:
    gdb.execute("source " + PRINTERS)
stop = gdb.Breakpoint("Stop")
stop.silent = True
gdb.execute("run")
gdb.selected_frame().older().select()
print("The views:")


def show(expression):
    text = gdb.execute("output " + expression, to_string=True)
    # GDB reports unreadable memory; the view reports it when GDB does not know the class.
    text = re.sub(r"^\w+ <(Cannot access .*)>$", r"\1", text)
    lines = text.splitlines()
    if len(lines) > 20:
        lines[5:-3] = ["  ..."]
    print("%s: %s" % (expression, "\n".join(lines)))


for name in ("whole", "empty", "zeroLength", "pastTheEnd", "single", "many", "unreadable", "begin", "third", "end",
             "onSingle", "onNothing", "configuration", "bos", "success", "stall", "noText",
             "*nowhereRange", "*(CDescriptorRangeIterator*)16", "*(RETURN_CODE*)16"):
    try:
        show(name)
    except gdb.error as error:
        print("%s: %s" % (name, error))

gdb.execute("set print elements 3")
show("whole")

statuses = gdb.parse_and_eval("statuses")["_M_elems"]
agreeing = 0
for index in range(statuses.type.strip_typedefs().range()[1] + 1):
    row = statuses[index]
    expected = "0x%08X %s" % (int(row["code"]) & 0xFFFFFFFF, row["text"].string())
    shown = row["code"].format_string()
    if shown == expected:
        agreeing += 1
    else:
        print("The library has \"%s\", the view \"%s\"." % (expected, shown))
print("%d status codes agree" % agreeing)
