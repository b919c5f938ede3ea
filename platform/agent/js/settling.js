// When a document counts as finished. The file is one function; given the ways into the document and
// what the agent has for it, it gives what the agent calls when the document has loaded, when its address
// may have moved, when the page makes a request, when the user does something and when a form goes out.
//
//   clock: one that the page cannot stop
//   forms: the forms of the document
//   concernsForms(records): whether changes of the document concern its forms
//   watch(isOn): whether the agent is to tell of the requests that the page makes, by `requested`
//   tell(forms): the document has finished, for the sake of these forms alone if there are any
//   acts(): how often the user has pressed a key or a button in the page
(function (dom, agent) {
  "use strict";

  const { clock, forms, concernsForms, watch, tell, acts } = agent;

  // A page that draws itself does so in bursts of a few milliseconds with pauses for what it fetches, and
  // scripts take over what a server has drawn. A pause of this length, in milliseconds, ends that; a page
  // that never rests is taken as it is at the limit.
  const kQuiet = 250;
  const kLimit = 2000;

  // How soon, in milliseconds, it is looked again whether what was waited for has come.
  const kPause = 50;

  const kAllChanges = { subtree: true, childList: true, characterData: true, attributes: true };

  let stopWaiting = null;

  /** Whether the document has a form that holds something to fill in. */
  const hasFields = () => dom.forms().some((form) => forms.controlsOf(form).length > 0);

  /** Calls an action once the document rests, in place of what it waited for before. */
  function whenRested(isBusy, action) {
    stopWaiting?.();
    let quiet = 0;
    let rootCount = 0;
    let hasForm = false;
    const observe = () => {
      const roots = dom.roots();
      for (const root of roots) observer.observe(root, kAllChanges);
      const hasGrown = roots.length > rootCount;
      rootCount = roots.length;
      hasForm = hasFields();
      return hasGrown;
    };
    const waitOn = (milliseconds) => {
      clock.cancel(quiet);
      quiet = clock.after(milliseconds, () => {
        // A shadow root comes without a word, and what it holds with it.
        if (observe()) waitOn(kQuiet);
        else if (isBusy()) waitOn(kPause);
        else end();
      });
    };
    const observer = new MutationObserver((records) => {
      // Where a form stands already the rest of the page may go on moving.
      if (!hasForm || concernsForms(records)) waitOn(kQuiet);
    });
    const end = () => {
      stopWaiting();
      action();
    };
    const limit = clock.after(kLimit, end);
    stopWaiting = () => {
      observer.disconnect();
      clock.cancel(quiet);
      clock.cancel(limit);
      stopWaiting = null;
    };
    observe();
    waitOn(kQuiet);
  }

  // --- The first rest ----------------------------------------------------------------------------

  // The addresses that the page has asked for and not got yet.
  const underWay = [];

  const arrivals = new PerformanceObserver((list) => {
    for (const { name } of list.getEntries()) {
      const place = underWay.indexOf(name);
      if (place >= 0) underWay.splice(place, 1);
    }
  });

  function requested(method, address, mode) {
    if (toldAddress === null && mode !== "navigate") underWay.push(address);
  }

  /** The frames that the user sees and whose documents the page may read finish before the page does. */
  function hasUnfinishedFrames() {
    const frames = dom.select("iframe,frame");
    // Once for all frames: to the engine each of these is a walk along them.
    const windows = frames.length > 0 ? Array.from({ length: window.length }, (_, i) => window[i]) : [];
    const isUnfinished = (frame) => {
      const index = windows.indexOf(frame.contentWindow);
      const isEmpty = index < 0 || forms.agentInside(index)?.isFinished() !== false;
      return !isEmpty && frame.checkVisibility();
    };
    return frames.some(isUnfinished);
  }

  const isBusy = () => hasUnfinishedFrames() || (underWay.length > 0 && !hasFields());

  let toldAddress = null;
  let isMoving = false;

  function finish() {
    stopWaiting?.();
    isMoving = false;
    arrivals.disconnect();
    watch(false);
    toldAddress = dom.address();
    tell([]);
    known = dom.forms().map(sketch).filter(hasNames);
    // A document's first form needs nobody to open it.
    hasActed = known.length === 0;
    if (hasActed) watchForms();
  }

  function loaded() {
    // Only a document that scripts may still draw is waited for.
    if (dom.scripts().length === 0 && !hasUnfinishedFrames()) finish();
    else whenRested(isBusy, finish);
  }

  /** A page moves within one document by its script (history entries) or by a fragment. */
  function moved() {
    if (toldAddress === null || dom.address() === toldAddress || isMoving) return;
    isMoving = true;
    whenRested(() => false, finish);
  }

  // --- Forms that come later ---------------------------------------------------------------------

  // The forms that the program has been told of, and whether it may be told of another: once for each time
  // that the user does something.
  let known = [];
  let hasActed = false;
  let laterChanges = null;

  /** What tells a form from another: the form, where it goes and the names of what is filled in. */
  function sketch(form) {
    const isFilledIn = ({ type }) => !["hidden", "submit", "button", "reset"].includes(type);
    const names = forms.controlsOf(form).filter(isFilledIn).map(({ name }) => name);
    return { form: new WeakRef(form), text: [forms.spelledAction(form), ...names] };
  }

  const hasNames = ({ text }) => text.length > 1;

  /**
   * Whether one form is another that was told before. A page draws a form anew to show it with other
   * values or one field more: then the user's values must not be written over once more.
   */
  function isSame(now, before) {
    const form = before.form.deref();
    const isInItsPlace = form === undefined || form === now.form.deref() || !dom.isConnected(form);
    if (isInItsPlace && (form === now.form.deref() || now.text[0] === before.text[0])) {
      return now.text.slice(1).some((name) => before.text.indexOf(name, 1) > 0);
    }
    return now.text.length === before.text.length && now.text.every((text, i) => text === before.text[i]);
  }

  function look() {
    const unknown = [];
    for (const now of dom.forms().map(sketch)) {
      const before = known.find((each) => isSame(now, each));
      if (before !== undefined) Object.assign(before, now);
      else if (hasNames(now)) unknown.push(now);
    }
    if (unknown.length === 0 || !hasActed) return;
    hasActed = false;
    known = [...known, ...unknown];
    tell(unknown.map(({ form }) => form.deref()));
  }

  /**
   * Whether a form goes out that the user has filled in before it was looked for, or the document finished:
   * once for each time that the user does something, since the page may refuse it at first.
   */
  function isNews(form) {
    const now = { ...sketch(form), newsAt: acts() };
    // What a page that is still loading hands on by itself has nothing to fill in.
    if (toldAddress === null && !hasNames(now)) return false;
    const before = known.find((each) => isSame(now, each));
    if (!hasActed || (before !== undefined && (before.newsAt ?? acts()) === acts())) return false;
    clock.after(0, () => (before === undefined ? known.push(now) : Object.assign(before, now)));
    return true;
  }

  function lookWhenRested() {
    if (stopWaiting !== null) return;
    watchForms();
    whenRested(() => false, look);
  }

  function watchForms() {
    laterChanges ??= new MutationObserver((records) => {
      if (concernsForms(records)) lookWhenRested();
    });
    for (const root of dom.roots()) laterChanges.observe(root, { subtree: true, childList: true });
  }

  /** What a page of today draws because of the user may hold a form: it is looked for from here on. */
  function acted() {
    hasActed = true;
    if (toldAddress !== null) lookWhenRested();
  }

  arrivals.observe({ type: "resource" });
  watch(true);

  // The empty document with which a frame begins may never finish.
  const isFinished = () => toldAddress !== null || dom.address() === "about:blank";

  return { loaded, moved, acted, requested, isNews, isFinished };
})
