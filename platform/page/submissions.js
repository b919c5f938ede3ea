// Submissions that the page's own script sends: a submit event whose default the page prevents, so
// that no navigation follows. The file is one function; given what the agent has for it, it watches the
// submit events of the document.
//
//   describe(form, submitter, entries): what the program is told of a submission with these entries
//   snapshot(form): the facts of the form as it stands
//   encodingOf(form): the name of the encoding in which the form is sent
//   tell(facts): sends it
(function (agent) {
  "use strict";

  const { describe, snapshot, tell, encodingOf } = agent;

  // A page may prevent the default and submit the form itself after all; its navigation is announced
  // by then, and the program sees that it need not hear of the submission twice. In milliseconds.
  const kDelay = 50;

  function controlEntries(control, submitter, encoding) {
    const { name, type } = control;
    if (type === "image") return control === submitter ? imageEntries(name) : [];
    if (["submit", "button", "reset"].includes(type) && control !== submitter) return [];
    if (["checkbox", "radio"].includes(type) && !control.checked) return [];
    if (name === "") return [];
    if (control instanceof HTMLSelectElement) {
      const chosen = Array.from(control.options).filter((option) => option.selected && !option.matches(":disabled"));
      return chosen.map((option) => [name, option.value]);
    }
    if (type === "file") {
      const files = Array.from(control.files, (file) => [name, file.name]);
      return files.length > 0 ? files : [[name, ""]];
    }
    if (type === "hidden" && name.toLowerCase() === "_charset_") return [[name, encoding]];
    const entries = [[name, control.value]];
    const directionName = control.getAttribute("dirname") ?? "";
    if (directionName !== "") entries.push([directionName, control.matches(":dir(rtl)") ? "rtl" : "ltr"]);
    return entries;
  }

  function imageEntries(name) {
    const prefix = name === "" ? "" : name + ".";
    return [[prefix + "x", "0"], [prefix + "y", "0"]];
  }

  /**
   * The entries of a form (HTML, "constructing the entry list"). They are gathered here, since a page
   * would notice it if the engine gathered them once more.
   */
  function entriesOf(form, submitter) {
    const elements = Object.getOwnPropertyDescriptor(HTMLFormElement.prototype, "elements").get.call(form);
    const controls = Array.from(elements);
    if (submitter?.type === "image") controls.push(submitter);
    const counts = (control) => control.matches("input,select,textarea,button") && !control.matches(":disabled") &&
      control.closest("datalist") === null;
    return controls.filter(counts).flatMap((control) => controlEntries(control, submitter, encodingOf(form)));
  }

  window.addEventListener("submit", (event) => {
    if (!event.isTrusted) return; // made by a script, to call the handlers of others
    const { target: form, submitter } = event;
    // Now, since the page's handlers may empty the form.
    const entries = entriesOf(form, submitter);
    const facts = [...describe(form, submitter, entries), document.URL, Date.now(), ...snapshot(form)];
    setTimeout(() => {
      if (event.defaultPrevented) tell(facts);
    }, kDelay);
  }, true);
})
