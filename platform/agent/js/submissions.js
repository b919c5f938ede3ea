// Submissions that the page's own script sends: a submit event whose default the page prevents, so
// that no navigation follows. The page may have refused the form as well ("please fill in your name"),
// so such an event counts only if the page sends something because of it or moves on. The file is one
// function; given the ways into the document and what the agent has for it, it watches the submit events.
//
//   describe(form, submitter, entries): what the program is told of a submission with these entries
//   goesToScript(form, submitter): whether the form's action is a script
//   fields, forms: the fields and the forms of the document
//   encodingOf(form): the name of the encoding in which the form is sent
//   tell(facts): sends it
//   watch(isOn): whether the agent is to tell of the requests that the page makes, by `requested`
//   acts(): how often the user has pressed a key or a button in the page
(function (dom, agent) {
  "use strict";

  const { describe, goesToScript, fields, forms, tell, encodingOf, clock, watch, acts } = agent;

  // What a page sends because of a submission it sends within this time, in milliseconds.
  const kPatience = 2000;

  // A value shorter than this stands in many an address by chance.
  const kTellingLength = 3;

  function controlEntries(control, submitter, encoding) {
    const { type } = control;
    const name = fields.nameOf(control);
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
    const controls = fields.fieldsOf(form);
    if (submitter?.type === "image") controls.push(submitter);
    const counts = (control) => !control.matches(":disabled");
    return controls.filter(counts).flatMap((control) => controlEntries(control, submitter, encodingOf(form)))
      .map((pair) => pair.map((text) => text.toWellFormed()));
  }

  /** What of a form's entries tells that an address carries them. */
  function valuesInAddress(entries) {
    const filled = entries.filter(([, value]) => value !== "").map((pair) => pair.map(encodeURIComponent));
    const telling = [...filled.map((pair) => pair.join("=")), ...filled.map(([, value]) => value)]
      .filter((text) => text.length >= kTellingLength);
    return [...telling, ...telling.map((text) => text.replaceAll("%20", "+"))];
  }

  /** The submission that may yet be sent: its event, its facts, what would show in an address, the user's acts. */
  let pending = null;
  let patience = null;

  function forget() {
    if (pending === null) return;
    pending = null;
    clock.cancel(patience);
    watch(false);
  }

  /** Whether the page's script sends the data: in place of the engine, or as what the form goes to. */
  const isByScript = ({ event, isToScript }) => isToScript || event.defaultPrevented;

  function count() {
    const counted = pending;
    forget();
    if (isByScript(counted)) tell(counted.facts);
  }

  /** The page goes to another address. After something else that the user has done, it does so because of that. */
  function moved() {
    if (pending === null) return;
    if (acts() === pending.acts) count();
    else forget();
  }

  /** Whether a request carries what the form holds, rather than a picture, a script or a note for statistics. */
  function isData(method, address, mode) {
    if (mode === "no-cors") return false;
    if (method !== "GET") return true;
    return pending.values.some((value) => address.includes(value));
  }

  dom.keepInside("submit", (event) => {
    if (!event.isTrusted) return; // made by a script, to call the handlers of others
    forget();
    const { target: form, submitter } = event;
    // Now, since the page's handlers may empty the form.
    const entries = entriesOf(form, submitter);
    forms.goesOut(form);
    const facts = [...describe(form, submitter, entries), Date.now(), ...forms.snapshot(form)];
    const isToScript = goesToScript(form, submitter);
    pending = { event, isToScript, facts, values: valuesInAddress(entries), acts: acts() };
    patience = clock.after(kPatience, forget);
    watch(true);
  });

  return {
    moved,
    /** The page makes a request: its method, address and mode (Fetch, "request mode"). */
    requested: (method, address, mode) => {
      if (pending === null) return;
      if (!isByScript(pending)) forget();
      else if (mode === "navigate") moved();
      else if (isData(method, address, mode)) count();
    },
  };
})
