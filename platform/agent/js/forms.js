// The forms of a document as the rules of capture and playback know forms: each with an action and
// fields that have names. The web of today has more in a form than that, and less; this file makes one
// of the other, and docs/document.md says where and why. It is one function; given the ways into the
// document and its fields, and what gives a field's name as records have it, it gives the facts that the
// program reads and the nodes that stand behind the program's handles.
(function (dom, fieldParts, recordedName) {
  "use strict";

  const { kFields, kFilledIn, fieldsOf, isDisabled, controlOf, isButton, isKnowable, isBox, valueOf, recorded,
    enterLineOf } = fieldParts;

  // --- Controls ----------------------------------------------------------------------------------

  // Whether the field of a handle was disabled when the program was first told of it: the order must not
  // change during a fill, also where the page draws the field anew.
  const wasDisabled = new Map();

  /**
   * Controls in their order: those that are sent, those that the page may yet enable, the buttons that submit
   * without a name.
   */
  function inOrder(controls) {
    const [sent, late, nameless] = [[], [], []];
    for (const control of controls) {
      const comesLate = !isButton(control) && (wasDisabled.get(handles.get(control.field)) ?? control.isDisabled);
      const place = comesLate ? late : sent;
      (control.name === "" ? nameless : place).push(control);
    }
    return [...sent, ...late, ...nameless];
  }

  const knowableOf = (form) => fieldsOf(form).map(controlOf).filter(isKnowable);
  const controlsOf = (form) => inOrder(knowableOf(form));

  // What was disabled when a form last went out. Many a page disables all of it from then on.
  const unsent = new WeakMap();

  function goesOut(form) {
    const disabled = listForm(handleOf(form)).filter((control) => control.isDisabled);
    unsent.set(form, new WeakSet(disabled.map(({ field }) => field)));
  }

  /** The controls without those whose name another has sent in their place. */
  function sentOf(controls, form) {
    const left = unsent.get(form);
    const isSent = (control) => !(left?.has(control.field) ?? control.isDisabled);
    const sent = new Set(controls.filter((control) => !isButton(control) && isSent(control)).map(({ name }) => name));
    return controls.filter((control) => isButton(control) || isSent(control) || !sent.has(control.name));
  }

  // --- Forms -------------------------------------------------------------------------------------

  const kInTag = { " ": "%20", ">": "%3E" };
  const forTag = (text) => text.replace(/[ >]/g, (c) => kInTag[c]);

  /** Whether an action as it is written says enough to be known again: by the file that takes the form. */
  function namesFile(written) {
    const file = written.split("?", 1)[0].split("/").at(-1);
    return file !== "" && file !== "." && file !== "..";
  }

  /**
   * A form's action without its fragment, as the page spells it, as far as it names a file and the engine
   * announces it in the same way; otherwise the address that is announced. A form without an action goes
   * to the document's own address.
   */
  function spelledAction(form) {
    const action = dom.read(HTMLFormElement, "action", form);
    const attribute = dom.isScript(action) ? "" : dom.attribute(form, "action") ?? "";
    const [written] = attribute.trim().split("#", 1);
    const isSpelledSo = /^[\w!#$%&()*+,./:;=?@[\]~-]*$/.test(written);
    if (isSpelledSo && namesFile(written)) return written;
    const [whole] = (dom.isScript(action) ? dom.address() : action).split("#", 1);
    if (namesFile(written)) return forTag(whole);
    // The fields of a get form take the place of the query; only a file's name would tell all the same.
    const isReplaced = dom.read(HTMLFormElement, "method", form) === "get" && !namesFile(whole);
    return forTag(isReplaced ? whole.split("?", 1)[0] : whole);
  }

  /** A field of the name "action" hides the form's own. */
  const hidesAction = (form) => typeof form.action !== "string";

  /** The form's id; one whose action is hidden needs one, since its tag is found by it. */
  function idOf(form) {
    const id = forTag(dom.attribute(form, "id") ?? "");
    return id === "" && hidesAction(form) ? `velmora-${handleOf(form)}-` : id;
  }

  const factsOfForm = (form, action) => [handleOf(form), action, hidesAction(form) ? 1 : 0, idOf(form)];

  // --- Handles: numbers by which the program names nodes of this document ------------------------

  const nodes = new Map();
  const handles = new WeakMap();
  // What is known of a node apart from its identity, and the form by which a field was listed.
  const marks = new Map();
  const listedBy = new Map();

  function nameNode(handle, node) {
    nodes.set(handle, new WeakRef(node));
    handles.set(node, handle);
  }

  function handleOf(node) {
    const known = handles.get(node);
    if (known !== undefined) return known;
    const handle = nodes.size;
    nameNode(handle, node);
    return handle;
  }

  function nodeOf(handle) {
    const node = nodes.get(Number(handle))?.deref();
    if (node === undefined) throw new Error("the element is gone");
    return node;
  }

  const isGone = (handle) => {
    const node = nodes.get(handle)?.deref();
    return node === undefined || !dom.isConnected(node);
  };

  // A page that draws itself anew puts other nodes that look the same in the place of its form and its
  // fields. A handle goes over from a node that has left the document to the one in its place.

  const markOfForm = (form, action = spelledAction(form)) => action + "\n" + (dom.attribute(form, "id") ?? "");
  // Boxes of one name differ in what they send.
  const markOfControl = (control) => `${control.type}\n${control.name}\n${isBox(control) ? valueOf(control) : ""}`;

  /** Never to a form that was there already: what is written must not land in another. */
  function formOf(handle) {
    if (isGone(handle)) {
      const isNew = (form) => !handles.has(form) && markOfForm(form) === marks.get(handle);
      const successor = dom.forms().find(isNew);
      if (successor !== undefined) nameNode(handle, successor);
    }
    const form = nodeOf(handle);
    marks.set(handle, markOfForm(form));
    return form;
  }

  const listed = new Map();

  /** The controls of the form of a handle, each under the handle that it, or the one before it, had. */
  function listForm(handle) {
    const form = formOf(handle);
    const controls = knowableOf(form);
    // The form may have to stand for a button.
    listedBy.set(handle, handle);
    const left = (listed.get(handle) ?? []).filter(isGone);
    for (const control of controls) {
      const { field } = control;
      const mark = markOfControl(control);
      const heir = left.length === 0 || handles.has(field) ? -1 : left.findIndex((each) => marks.get(each) === mark);
      if (heir >= 0) nameNode(left.splice(heir, 1)[0], field);
      const own = handleOf(field);
      marks.set(own, mark);
      listedBy.set(own, handle);
      if (!wasDisabled.has(own)) wasDisabled.set(own, control.isDisabled);
    }
    listed.set(handle, controls.map(({ field }) => handleOf(field)));
    return inOrder(controls);
  }

  /** The field of a handle, or the one that has taken its place. */
  function standing(handle) {
    const number = Number(handle);
    if (isGone(number) && listedBy.has(number)) listForm(listedBy.get(number));
    return nodeOf(number);
  }

  // --- Facts -------------------------------------------------------------------------------------

  // What the program has been told of the options of a list.
  const toldOptions = new Map();

  const textsOf = (option) => [option.text, option.value];

  /** The texts of the option that was told under an index. */
  const toldOption = (handle, index) => toldOptions.get(Number(handle))?.[Number(index)];

  /** An option by its texts, since a page may have drawn its list anew; of several alike the first. */
  function optionOf(handle, [text, value] = []) {
    return Array.from(standing(handle).options).find((each) => each.text === text && each.value === value);
  }

  function factsOf(control) {
    const { field, name, type } = control;
    const handle = handleOf(field);
    // A picture need not be an attribute's: a style may draw it.
    const source = dom.attribute(field, "src") ?? (type === "image" ? dom.address() : "");
    const isTicked = field.checked ? 1 : 0;
    const facts = [handle, recordedName(name, field.form), type, valueOf(control), isTicked, source];
    if (dom.nameOf(field) !== "select") return [...facts, 0];
    const options = Array.from(field.options);
    const texts = options.map(textsOf);
    if (texts.length > 0) toldOptions.set(handle, texts);
    facts.push(options.length);
    for (const [i, [text, value]] of texts.entries()) {
      facts.push(recorded(text), recorded(value), options[i].selected ? 1 : 0);
    }
    return facts;
  }

  function controlFacts(controls, form = null) {
    const facts = controls.map(factsOf);
    const mayLackButton = form !== null && !controls.some(isButton);
    // A form that Enter sends is itself the button that it lacks.
    if (mayLackButton && enterLineOf(form) !== undefined) facts.push([handleOf(form), "", "submit", "", 0, "", 0]);
    return [facts.length, ...facts.flat()];
  }

  /** The agent's script in a frame inside; undefined if that is of another origin, by the web's own rules. */
  function agentInside(index) {
    try {
      const frame = window[index];
      // An element of that name is no agent.
      return frame.document !== null && Object.hasOwn(frame, "velmoraAgent") ? frame.velmoraAgent : undefined;
    } catch {
      return undefined;
    }
  }

  /**
   * The frames that can hold a form. A page of today has others by the dozen, for advertisements and
   * counters; those of a frameset are the page.
   */
  function framesThatCount() {
    const isFrameset = dom.first("frameset") !== null;
    return Array.from({ length: window.length }, (_, index) => index)
      .filter((index) => isFrameset || agentInside(index)?.holdsFields());
  }

  const holdsFields = () => dom.select(kFilledIn).length > 0 || framesThatCount().length > 0;

  /**
   * The forms to be listed: "only" those of the handles, or all, with those of the handles "first".
   */
  function formsInOrder(order, given) {
    const chosen = given.map((handle) => nodeOf(handle));
    if (order === "only") return chosen;
    const others = dom.forms().filter((form) => !chosen.includes(form));
    if (others.length < 2) return [...chosen, ...others];
    // A form of fields without names would pass for any other that goes to the same place.
    const isNameless = others.map((form) => {
      const fields = fieldsOf(form);
      return fields.length > 0 && !fields.some((field) => isKnowable(controlOf(field)));
    });
    return [...chosen, ...others.filter((_, i) => !isNameless[i]), ...others.filter((_, i) => isNameless[i])];
  }

  const reads = {
    // A document that is read for one of its forms has no frames to look in first.
    document: (order, ...given) => {
      const frames = order === "first" ? [] : framesThatCount();
      const forms = formsInOrder(order, given);
      const facts = forms.flatMap((form) => {
        const action = spelledAction(form);
        marks.set(handleOf(form), markOfForm(form, action));
        return factsOfForm(form, action);
      });
      // Of a form that is sent the fields are asked for next.
      const fields = order === "first" ? reads.form(given[0], order) : [];
      return [frames.length, ...frames, forms.length, ...facts, ...fields];
    },
    form: (handle, order) => {
      const controls = listForm(Number(handle));
      const form = nodeOf(handle);
      return controlFacts(order === "first" ? sentOf(controls, form) : controls, form);
    },
    tag: (name) => {
      const fields = dom.select(name.toLowerCase()).filter((element) => dom.matches(element, kFields));
      return controlFacts(fields.map(controlOf));
    },
    frame: (index) => {
      const agent = agentInside(Number(index));
      if (agent?.read === undefined) throw new Error("the frame has no document");
      return [agent.frameNumber, agent.documentNumber];
    },
    // A button that is disabled, and one that has left the page, may come to be of use yet.
    ready: (handle) => {
      const button = standing(handle);
      const isUsable = dom.isForm(button) ? enterLineOf(button) !== undefined : !isDisabled(button);
      return [dom.isConnected(button) && isUsable ? 1 : 0];
    },
  };

  return {
    reads,
    standing,
    agentInside,
    holdsFields,
    controlsOf,
    spelledAction,
    handleOf,
    toldOption,
    optionOf,
    goesOut,
    snapshot: (form) => [...factsOfForm(form, spelledAction(form)), ...controlFacts(sentOf(controlsOf(form), form))],
  };
})
