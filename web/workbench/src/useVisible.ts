import { useEffect, useState, type RefObject } from 'react';
import { lastOf } from './lastOf';

/** Whether the element is on the screen. */
export function useVisible(element: RefObject<Element | null>): boolean {
  const [isVisible, setVisible] = useState(true);
  useEffect(() => {
    const observer = new IntersectionObserver((entries) => setVisible(lastOf(entries)!.isIntersecting));
    observer.observe(element.current!);
    return () => observer.disconnect();
  }, [element]);
  return isVisible;
}
