// Links the fields of a descriptor with its bytes: point at one to highlight the other, choose one
// and both stay highlighted. Without this script the same links work, one at a time.
(function () {
  "use strict";
  var chosen = null;

  // The number of the field that an element belongs to, or null.
  function fieldOf(element) {
    var one = element && element.closest ? element.closest(".x a, article tr[id]") : null;
    return one ? one.id.slice(1) : null;
  }

  function light(field, isOn) {
    ["f", "b"].forEach(function (kind) {
      var one = field === null ? null : document.getElementById(kind + field);
      if (one) one.classList.toggle("on", isOn);
    });
  }

  function say(field) {
    var row = document.getElementById("f" + field);
    var bytes = document.getElementById("b" + field);
    document.getElementById("say").textContent =
      row.cells[1].textContent + ": bytes " + bytes.textContent;
  }

  function choose(field) {
    light(chosen, false);
    chosen = field === chosen ? null : field;
    light(chosen, true);
    if (chosen !== null) say(chosen);
  }

  document.addEventListener("mouseover", function (event) {
    light(fieldOf(event.target), true);
  });
  document.addEventListener("mouseout", function (event) {
    var field = fieldOf(event.target);
    if (field !== chosen) light(field, false);
  });
  document.addEventListener("click", function (event) {
    var field = fieldOf(event.target);
    if (field === null) return;
    if (event.target.closest("a")) event.preventDefault();
    choose(field);
  });
  // The arrows go from field to field, and from byte to byte; Escape clears the choice.
  document.addEventListener("keydown", function (event) {
    var step = { ArrowUp: -1, ArrowLeft: -1, ArrowDown: 1, ArrowRight: 1 }[event.key];
    var field = fieldOf(document.activeElement);
    if (event.key === "Escape" && chosen !== null) {
      choose(chosen);
    } else if (step && field !== null) {
      var isByte = document.activeElement.id.charAt(0) === "b";
      var next = document.getElementById((isByte ? "b" : "f") + (Number(field) + step));
      var link = next && (isByte ? next : next.querySelector("a"));
      if (link) {
        link.focus();
        event.preventDefault();
      }
    }
  });
  // Tab stops only at fields, and reaches bytes through them, so it has half as many stops.
  document.querySelectorAll(".x a").forEach(function (bytes) { bytes.tabIndex = -1; });
})();
