-- The want list holds at most one order line per drug: two workstations that both find a
-- drug below its reorder point cannot both add a line; the second insert fails and is
-- reported, and the next sale of the drug updates the one line.
--
-- refuse if any row: WANTBOOK holds more than one line for a drug; keep one line per drug first (DrugID, lines)
SELECT DrugID, COUNT(*) AS Lines
FROM WANTBOOK
GROUP BY DrugID
HAVING COUNT(*) > 1
ORDER BY DrugID;

DROP INDEX WANTBOOK_DrugID;

CREATE UNIQUE INDEX WANTBOOK_DrugID ON WANTBOOK (DrugID);
