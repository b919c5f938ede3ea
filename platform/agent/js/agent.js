// The page agent's script. It runs in every frame of a page, in a script world of its own: the page's
// scripts cannot see or change what is here, and the prototypes that it uses are untouched.
//
// The file is one function. It is called once for each new document, with the frame's and the document's
// number and, as `parts`, the functions of the other files and those that the program gives the scripts:
//
//   tell(kind, packed): sends an event to the program
//   convert(text, encoding): the bytes of a text in an encoding, each as the character of its number
//   serve(): serves what the program asks, up to a write; true after a write
//   watch(isOn): whether to call `requested` for each request that the page makes
//   clock: after(milliseconds, action) gives the number by which cancel(number) stops it
//
// What it returns answers the program's requests; it is kept as `velmoraAgent` in the frame's window, where
// the agents of the frames around find it.
(function (frameNumber, documentNumber, parts) {
  "use strict";

  const dom = parts.dom();
  const { clock } = parts;
  const { encodingOf, nameOf, describe, targetOf } = parts.outgoing(dom, parts, () => acts);

  // --- Texts on the wire: joined by line feeds, with "\", line feed and zero escaped -------------

  const kEscapes = { "\\": "\\\\", "\n": "\\n", "\0": "\\0" };
  const kEscaped = { "\\": "\\", n: "\n", 0: "\0" };

  function pack(texts) {
    return texts
      .map((text) => String(text).replace(/[\\\n\0]/g, (c) => kEscapes[c]))
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

  function observe() {
    if (observer !== null) return;
    observer = new MutationObserver(note);
    observer.observe(document, {
      subtree: true,
      childList: true,
      characterData: true,
      attributes: true,
      attributeFilter: kAttributes,
    });
  }

  // --- Handles: numbers by which the program names nodes of this document ------------------------

  const nodes = new Map();
  const handles = new WeakMap();
  const optionLists = new WeakMap();

  function handleOf(node) {
    let handle = handles.get(node);
    if (handle === undefined) {
      handle = nodes.size;
      nodes.set(handle, new WeakRef(node));
      handles.set(node, handle);
    }
    return handle;
  }

  function nodeOf(handle) {
    const node = nodes.get(Number(handle))?.deref();
    if (node === undefined) throw new Error("the element is gone");
    return node;
  }

  // --- Reads ------------------------------------------------------------------------------------

  function controlsOf(form) {
    const listed = Array.from(dom.read(HTMLFormElement, "elements", form));
    return listed.filter((element) => element.matches("input,select,textarea,button"));
  }

  // The kinds of fields that hold a text. The program knows them by one name, whatever kind of text a
  // page's author expects in them.
  const kTextTypes = ["color", "date", "datetime-local", "email", "month", "number", "range", "search", "tel", "time",
    "url", "week"];

  function typeOf(element) {
    return kTextTypes.includes(element.type) ? "text" : element.type ?? "";
  }

  function elementFacts(element) {
    const isSelect = element instanceof HTMLSelectElement;
    const facts = [
      handleOf(element),
      nameOf(element),
      typeOf(element),
      element.value ?? "",
      element.checked ? 1 : 0,
      dom.attribute(element, "src") ?? "",
    ];
    const options = isSelect ? Array.from(element.options) : [];
    if (isSelect) optionLists.set(element, options);
    facts.push(options.length);
    for (const option of options) facts.push(option.text, option.value, option.selected ? 1 : 0);
    return facts;
  }

  function listFacts(elements) {
    const facts = [elements.length];
    for (const element of elements) facts.push(...elementFacts(element));
    return facts;
  }

  /**
   * A form's action as the page spells it, as far as the engine announces it in the same way; otherwise
   * the address that it announces.
   */
  function spelledAction(form) {
    const written = dom.attribute(form, "action") ?? "";
    return /^[\w!#$%&()*+,./:;=?@[\]~-]*$/.test(written) ? written : dom.read(HTMLFormElement, "action", form);
  }

  function actionOf(form) {
    return typeof form.action === "string" ? spelledAction(form) : "[object]";
  }

  /** A form's id, without what would end its tag. */
  function idOf(form) {
    return (dom.attribute(form, "id") ?? "").replaceAll(">", "%3E");
  }

  function formFacts(form) {
    return [handleOf(form), actionOf(form), idOf(form)];
  }

  /** The tags of the document's forms, with what there is to know of them and no quotes. */
  function markup() {
    const attribute = (name, value) => (value === "" ? "" : ` ${name}=${value}`);
    const tagOf = (form) => `<form${attribute("action", spelledAction(form)) + attribute("id", idOf(form))} >`;
    return dom.forms().map(tagOf).join("\n");
  }

  function documentFacts() {
    const forms = dom.forms();
    const facts = [window.length, forms.length];
    for (const form of forms) facts.push(...formFacts(form));
    return facts;
  }

  const reads = {
    document: documentFacts,
    form: (handle) => listFacts(controlsOf(nodeOf(handle))),
    tag: (name) => listFacts(dom.byTag(name)),
    markup: () => [markup()],
    // A frame of another origin refuses here, by the web's own rules.
    frame: (index) => {
      const child = window[Number(index)];
      if (child.document === null || child.velmoraAgent?.answer === undefined) {
        throw new Error("the frame has no document");
      }
      return [child.velmoraAgent.frameNumber, child.velmoraAgent.documentNumber];
    },
  };

  // --- Writes: what a user's own change does, and only if it changes something -------------------

  function announceChange(element, inputEvent) {
    dom.dispatch(element, inputEvent);
    dom.dispatch(element, new Event("change", { bubbles: true }));
  }

  const writes = {
    value: (handle, text) => {
      const element = nodeOf(handle);
      const before = element.value;
      if (before === text) return;
      // The setter of this world's prototype: a page's own setter on the element is not called, so
      // that a page which compares old and new value in its handler sees the change.
      element.value = text;
      if (element.value === before) return;
      announceChange(element, new InputEvent("input", { bubbles: true, composed: true, inputType: "insertText" }));
    },
    check: (handle) => {
      const element = nodeOf(handle);
      if (!element.checked) element.click();
    },
    select: (handle, index) => {
      const element = nodeOf(handle);
      const option = optionLists.get(element)?.[Number(index)];
      if (option === undefined || option.closest("select") !== element) throw new Error("the option is gone");
      if (option.selected) return;
      option.selected = true;
      announceChange(element, new Event("input", { bubbles: true, composed: true }));
    },
  };

  // --- Requests of the program ------------------------------------------------------------------

  function answer(message) {
    // A frame that was taken out of the page lives on for as long as something holds it.
    if (window.top === null) throw new Error("the frame is gone");
    const [operation, ...given] = unpack(message);
    observe();
    if (Object.hasOwn(reads, operation)) return pack(reads[operation](...given));
    if (Object.hasOwn(writes, operation)) {
      writes[operation](...given);
      return "";
    }
    throw new Error("no such operation: " + operation);
  }

  /** The program has what it wants of this event; watching every change would only cost the page time. */
  function rest() {
    observer?.disconnect();
    observer = null;
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
      if (event.isTrusted) acts += 1;
    }, true);
  }

  let lastSubmit = null;

  dom.keep("submit", (event) => {
    lastSubmit = event;
    clock.after(0, () => {
      if (lastSubmit === event) lastSubmit = null;
    });
  }, true);

  /** The button by which a form is submitted; null if a script gathers its entries. */
  function submitterOf(form) {
    if (lastSubmit === null || lastSubmit.target !== form) return null;
    // The engine gathers them once all listeners have run and none has stopped it; before that and
    // after that it is a page's script: `new FormData(form)` or `form.submit()`.
    const goesOut = lastSubmit.eventPhase === Event.NONE && !lastSubmit.defaultPrevented;
    return goesOut ? lastSubmit.submitter : null;
  }

  let lastFacts = { formData: null, packed: "" };

  function tellFormData(event) {
    const facts = describe(event.target, submitterOf(event.target), event.formData, false);
    if (facts[1] === "dialog") return; // closes a dialog of the page, goes nowhere
    const packed = pack(facts);
    if (lastFacts.formData === event.formData && lastFacts.packed === packed) return;
    lastFacts = { formData: event.formData, packed };
    tell("formdata", facts);
  }

  // The page's own listeners may change the entries, and one may stop the event. So the entries are
  // told as they are at first, and again if they differ after the listeners of any of these places:
  // the program takes the last.
  dom.keep("formdata", (event) => {
    tellFormData(event);
    for (const place of [event.target, document, window]) {
      dom.unlisten(place, "formdata", tellFormData); // to come after those that were added since
      dom.listen(place, "formdata", tellFormData);
    }
  }, true);

  const withoutFragment = (address) => address.split("#", 1)[0];

  dom.keep("click", (event) => {
    const link = event.composedPath()
      .find((node) => node instanceof HTMLAnchorElement || node instanceof HTMLAreaElement);
    if (link === undefined || !link.hasAttribute("href")) return;
    const staysHere = link.href.includes("#") && withoutFragment(link.href) === withoutFragment(dom.address());
    tell("link", [link.href, targetOf(link), staysHere ? 1 : 0]);
  }, true);

  const submissions = parts.submissions(dom, {
    encodingOf,
    describe,
    snapshot: (form) => [...formFacts(form), ...listFacts(controlsOf(form))],
    tell: (facts) => tell("submitted", facts),
    clock,
    watch: parts.watch,
    acts: () => acts,
  });

  const isTop = window.parent === window ? 1 : 0;

  // A page answers an event in promises, and a promise may lead to another: after a write this many
  // turns are left to them before the program hears what the write has changed.
  const kTurns = 8;

  /** Serves the program from inside the microtasks of the finished document's last event. */
  function serve(turnsLeft) {
    if (turnsLeft > 0) queueMicrotask(() => serve(turnsLeft - 1));
    else if (parts.serve()) queueMicrotask(() => serve(kTurns));
  }

  const settling = parts.settling(dom, clock, () => {
    tell("finished", [dom.address(), isTop]);
    queueMicrotask(() => serve(0));
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
    answer,
    currentRevision,
    rest,
    click: (handle) => nodeOf(handle).click(),
    moved,
    requested: (message) => submissions.requested(...unpack(message)),
  };
});
