// The page agent's script. It runs in every frame of a page, in a script world of its own: the page's
// scripts cannot see or change what is here, and the prototypes that it uses are untouched.
//
// The file is one function. It is called once for each new document, with the frame's and the document's
// number and, as `parts`, the functions of the other files and those that the program gives the scripts:
//
//   tell(kind, packed): sends an event to the program
//   convert(text, encoding): the bytes of a text in an encoding, each as the character of its number
//   serve(isFirst): serves what the program asks, up to a write; true after a write, to be called again
//   watch(isOn): whether to call `requested` for each request that the page makes
//   clock: after(milliseconds, action) gives the number by which cancel(number) stops it
//
// What it returns answers the program's requests; it is kept as `velmoraAgent` in the frame's window, where
// the agents of the frames around find it.
(function (frameNumber, documentNumber, parts) {
  "use strict";

  const tellFault = (error) => tell("error", [error + "\n" + error.stack]);
  const dom = parts.dom(tellFault);
  const { clock } = parts;
  const { encodingOf, recordedName, describe, goesToScript, targetOf } = parts.outgoing(dom, parts, () => acts);
  const fields = parts.fields(dom);
  const forms = parts.forms(dom, fields, recordedName);
  const writes = parts.writes(dom, fields, forms, () => currentRevision());

  // --- Texts on the wire: joined by line feeds, with "\", line feed and zero escaped -------------

  const kEscapes = { "\\": "\\\\", "\n": "\\n", "\0": "\\0" };
  const kEscaped = { "\\": "\\", n: "\n", 0: "\0" };

  /** Nearly all texts have nothing to escape, and there are many. */
  const escaped = (text) => (/[\\\n\0]/.test(text) ? text.replace(/[\\\n\0]/g, (c) => kEscapes[c]) : text);

  function pack(texts) {
    return texts
      .map((text) => (typeof text === "number" ? text : escaped(String(text))))
      .join("\n")
      .toWellFormed();
  }

  function unpack(message) {
    return message.split("\n").map((text) => text.replace(/\\(.)/g, (_, c) => kEscaped[c] ?? c));
  }

  function tell(kind, texts) {
    parts.tell(kind, pack(texts));
  }

  // --- What the program knows stays valid until the form's structure changes ---------------------

  const kStructure = "input,select,textarea,button,option,optgroup,form,iframe,frame,frameset";
  const kAttributes =
    ["name", "type", "value", "src", "form", "action", "id", "label", "disabled", "checked", "selected"];

  let revision = 1;
  let observer = null;

  function concernsForms(node) {
    return dom.isElement(node) && (dom.matches(node, kStructure) || dom.find(node, kStructure) !== null);
  }

  function changesStructure(record) {
    const inside = dom.isElement(record.target) ? record.target : dom.parentOf(record.target);
    if (inside !== null && dom.closest(inside, "select") !== null) return true;
    if (record.type === "attributes") return dom.matches(inside, kStructure);
    return [...record.addedNodes, ...record.removedNodes].some(concernsForms);
  }

  function note(records) {
    if (records.some(changesStructure)) revision += 1;
  }

  const kObserved =
    { subtree: true, childList: true, characterData: true, attributes: true, attributeFilter: kAttributes };

  function observe() {
    if (observer !== null) return;
    observer = new MutationObserver(note);
    for (const root of dom.roots()) observer.observe(root, kObserved);
  }

  // --- Requests of the program ------------------------------------------------------------------

  function prepare() {
    // A frame that was taken out of the page lives on for as long as something holds it.
    if (window.top === null) throw new Error("the frame is gone");
    observe();
  }

  function read(message) {
    prepare();
    const [operation, ...given] = unpack(message);
    if (!Object.hasOwn(forms.reads, operation)) throw new Error("no such operation: " + operation);
    return pack(forms.reads[operation](...given));
  }

  /** An answer to a row of writes, once there is one. */
  const whenDone = (count) => (count === undefined ? "" : pack([count]));

  function write(message) {
    prepare();
    return whenDone(writes.begin(...unpack(message)));
  }

  function goOn() {
    prepare();
    return whenDone(writes.goOn());
  }

  /** The program has what it wants of this event; watching every change would only cost the page time. */
  function rest() {
    observer?.disconnect();
    observer = null;
    writes.forget();
    revision += 1;
  }

  /** How often the structure has changed; called after the page's own reactions have run. */
  function currentRevision() {
    if (observer !== null) note(observer.takeRecords());
    return revision;
  }

  // --- Events for the program -------------------------------------------------------------------

  // How often the user has pressed a key or a button in this document.
  let acts = 0;
  for (const type of ["keydown", "pointerdown"]) {
    dom.keep(type, (event) => {
      if (!event.isTrusted) return;
      acts += 1;
      event.composedPath().filter(dom.isShadowRoot).forEach(dom.enter);
      settling.acted();
    });
  }

  // The last submit event and its form: an event forgets its target when it has run in a shadow root.
  const kNoSubmit = { event: null, form: null };
  let lastSubmit = kNoSubmit;

  dom.keepInside("submit", (event) => {
    lastSubmit = { event, form: event.target };
    clock.after(0, () => {
      if (lastSubmit.event === event) lastSubmit = kNoSubmit;
    });
  });

  /**
   * Whether the engine gathers a form's entries because of its submit event: once all listeners have run and none
   * has stopped it. Before that and after that it is a page's script: `new FormData(form)` or `form.submit()`.
   */
  const isSubmitted = (form) => lastSubmit.form === form && lastSubmit.event.eventPhase === Event.NONE &&
    !lastSubmit.event.defaultPrevented;

  const submitterOf = (form) => (isSubmitted(form) ? lastSubmit.event.submitter : null);

  // For so long, in milliseconds, and until the user acts anew, what is gathered of a form that was submitted is
  // not what is sent: newer engines do so once more for the page's own eyes when the navigation begins.
  const kEcho = 5000;

  const kNothing = { event: null, form: null, formData: null, acts: 0 };
  let justSent = kNothing;

  function isEcho({ target: form, formData }) {
    const { event } = lastSubmit;
    // The first entries that the engine gathers for a submit event are those that it sends.
    if (isSubmitted(form) && justSent.event !== event) {
      justSent = { event, form, formData, acts };
      clock.after(kEcho, () => {
        if (justSent.event === event) justSent = kNothing;
      });
    }
    return form === justSent.form && acts === justSent.acts && formData !== justSent.formData;
  }

  /** What the program is told of a form that goes out, and whether it has not been told of the form before. */
  const describeSent = (form, ...rest) =>
    [...describe(form, ...rest), settling.isNews(form) ? 1 : 0, dom.address()];

  let lastFacts = { formData: null, packed: "" };

  const tellFormData = dom.guarded((event) => {
    if (isEcho(event)) return;
    const facts = describeSent(event.target, submitterOf(event.target), event.formData, false);
    if (facts[1] === "dialog") return; // closes a dialog of the page, goes nowhere
    facts.push(forms.handleOf(event.target));
    const packed = pack(facts);
    if (lastFacts.formData === event.formData && lastFacts.packed === packed) return;
    lastFacts = { formData: event.formData, packed };
    tell("formdata", facts);
  });

  // The page's own listeners may change the entries, and one may stop the event. So the entries are
  // told as they are at first, and again if they differ after the listeners of any of these places:
  // the program takes the last.
  dom.keepInside("formdata", (event) => {
    if (!isEcho(event)) forms.goesOut(event.target);
    tellFormData(event);
    for (const place of [event.target, dom.rootOf(event.target), window]) {
      dom.unlisten(place, "formdata", tellFormData); // to come after those that were added since
      dom.listen(place, "formdata", tellFormData);
    }
  });

  const withoutFragment = (address) => address.split("#", 1)[0];

  dom.keep("click", (event) => {
    const link = event.composedPath()
      .find((node) => node instanceof HTMLAnchorElement || node instanceof HTMLAreaElement);
    if (link === undefined || !link.hasAttribute("href")) return;
    const staysHere = link.href.includes("#") && withoutFragment(link.href) === withoutFragment(dom.address());
    tell("link", [link.href, targetOf(link), staysHere ? 1 : 0]);
  });

  // Which of the scripts want to hear of the page's requests.
  const watchers = new Set();

  function watch(watcher, isOn) {
    if (isOn) watchers.add(watcher);
    else watchers.delete(watcher);
    parts.watch(watchers.size > 0);
  }

  const submissions = parts.submissions(dom, {
    encodingOf,
    describe: describeSent,
    goesToScript,
    fields,
    forms,
    tell: (facts) => tell("submitted", facts),
    clock,
    watch: (isOn) => watch("submissions", isOn),
    acts: () => acts,
  });

  const isTop = window.parent === window ? 1 : 0;

  // A page answers an event in promises, and a promise may lead to another: after a write this many
  // turns are left to them before the program hears what the write has changed.
  const kTurns = 8;

  /** Serves the program from inside the microtasks of the finished document's last event. */
  function serve(turnsLeft, isFirst = false) {
    if (turnsLeft > 0) queueMicrotask(() => serve(turnsLeft - 1));
    else if (parts.serve(isFirst)) queueMicrotask(() => serve(kTurns));
  }

  const settling = parts.settling(dom, {
    clock,
    forms,
    concernsForms: (records) => records.some(changesStructure),
    watch: (isOn) => watch("settling", isOn),
    acts: () => acts,
    tell: (laterForms) => {
      tell("finished", [dom.address(), isTop, laterForms.length, ...laterForms.map(forms.handleOf)]);
      queueMicrotask(() => serve(0, true));
    },
  });

  function moved() {
    submissions.moved();
    settling.moved();
  }

  // The event after all listeners of "load" have run; it comes for a page from the history's store too,
  // which does not load again.
  dom.keep("pageshow", settling.loaded);
  dom.keep("hashchange", moved);
  dom.keep("popstate", moved);

  tell("begun", [dom.address(), isTop]);

  return {
    frameNumber,
    documentNumber,
    read,
    write,
    goOn,
    currentRevision,
    rest,
    click: writes.click,
    moved,
    requested: (message) => {
      const request = unpack(message);
      settling.requested(...request);
      submissions.requested(...request);
    },
    holdsFields: forms.holdsFields,
    isFinished: settling.isFinished,
  };
});
