-- A prescription number and refill number name one fill: two workstations that read the
-- same next refill number cannot both store it. Deleted fills stand aside, so a deleted
-- refill's number may be filled again.
--
-- refuse if any row: RXINFO holds fills that are not deleted with the same Number and RefillNumber; delete or renumber them first (Number, RefillNumber, fills)
SELECT Number, RefillNumber, COUNT(*) AS Fills
FROM RXINFO
WHERE COALESCE(Deleted, 0) = 0
GROUP BY Number, RefillNumber
HAVING COUNT(*) > 1
ORDER BY Number, RefillNumber;

CREATE UNIQUE INDEX RXINFO_LiveFill ON RXINFO (Number, RefillNumber) WHERE COALESCE(Deleted, 0) = 0;
