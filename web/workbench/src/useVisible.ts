import { useEffect, useState, type RefObject } from 'react';

/** Whether the element is on the screen. */
export function useVisible(element: RefObject<Element | null>): boolean {
  const [isVisible, setVisible] = useState(true);
  useEffect(() => {
    const observer = new IntersectionObserver((entries) => setVisible(entries.at(-1)!.isIntersecting));
    observer.observe(element.current!);
    return () => observer.disconnect();
  }, [element]);
  return isVisible;
}
